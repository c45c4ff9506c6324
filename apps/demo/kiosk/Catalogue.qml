pragma Singleton
import QtQuick

// What the kiosk sells. Prices are in cents.
QtObject {
    readonly property var categories: ["Coffee", "Cold", "Bakery", "Lunch"]

    readonly property var products: [
        { id: "flat-white", category: "Coffee", name: "Flat white", cents: 360, shape: "cup", colour: "#B98A5E", tint: "#F3E6D8" },
        { id: "cappuccino", category: "Coffee", name: "Cappuccino", cents: 340, shape: "cup", colour: "#D8B48C", tint: "#F1E9DC" },
        { id: "espresso", category: "Coffee", name: "Espresso", cents: 220, shape: "cup", colour: "#5B3A24", tint: "#EFE3D9" },
        { id: "latte", category: "Coffee", name: "Oat latte", cents: 390, shape: "glass", colour: "#CFA67C", tint: "#F5EADD" },
        { id: "mocha", category: "Coffee", name: "Mocha", cents: 410, shape: "cup", colour: "#7A4A2E", tint: "#F0E2D8" },
        { id: "mint-tea", category: "Coffee", name: "Mint tea", cents: 280, shape: "glass", colour: "#B9CF8E", tint: "#E9F0DD" },
        { id: "iced-latte", category: "Cold", name: "Iced latte", cents: 420, shape: "glass", colour: "#C79A6B", tint: "#F3E8DB" },
        { id: "lemonade", category: "Cold", name: "Lemonade", cents: 350, shape: "glass", colour: "#F2D65C", tint: "#FAF3D6" },
        { id: "orange", category: "Cold", name: "Orange juice", cents: 390, shape: "glass", colour: "#F29C3B", tint: "#FCEBD7" },
        { id: "iced-tea", category: "Cold", name: "Peach iced tea", cents: 360, shape: "glass", colour: "#E08A4F", tint: "#FBE9DD" },
        { id: "smoothie", category: "Cold", name: "Berry smoothie", cents: 480, shape: "glass", colour: "#B4577F", tint: "#F5E3EB" },
        { id: "croissant", category: "Bakery", name: "Croissant", cents: 240, shape: "croissant", colour: "#D99A4E", tint: "#F8EBD8" },
        { id: "muffin", category: "Bakery", name: "Berry muffin", cents: 290, shape: "muffin", colour: "#D7A56B", tint: "#EFE4EE" },
        { id: "cocoa-muffin", category: "Bakery", name: "Cocoa muffin", cents: 290, shape: "muffin", colour: "#7A4F35", tint: "#F0E4DB" },
        { id: "cookie", category: "Bakery", name: "Salted cookie", cents: 190, shape: "cookie", colour: "#C98B4F", tint: "#F4E7D9" },
        { id: "toast", category: "Lunch", name: "Garden toast", cents: 590, shape: "sandwich", colour: "#E0B57A", tint: "#E8F0DF" },
        { id: "toastie", category: "Lunch", name: "Cheese toastie", cents: 520, shape: "sandwich", colour: "#D9963F", tint: "#FBEFD9" },
        { id: "lentils", category: "Lunch", name: "Lentil soup", cents: 520, shape: "bowl", colour: "#C9903F", tint: "#F7EBD5" },
        { id: "soup", category: "Lunch", name: "Tomato soup", cents: 540, shape: "bowl", colour: "#D2553A", tint: "#FAE6DF" }
    ]

    function of(category) {
        return products.filter(product => product.category === category)
    }
    function find(id) {
        return products.find(product => product.id === id)
    }
}
