import QtQuick

// A drawing of a product on a ground of its tint.
Rectangle {
    id: picture

    required property var product

    color: product.tint

    Canvas {
        id: canvas
        readonly property real side: Math.min(picture.width, picture.height)
        anchors.centerIn: parent
        width: side
        height: side
        onSideChanged: requestPaint()
        onPaint: {
            const context = getContext("2d")
            context.reset()
            context.scale(side / 100, side / 100)
            context.lineCap = "round"
            context.lineJoin = "round"
            const draw = { cup: cup, glass: glass, croissant: croissant, muffin: muffin, cookie: cookie,
                           sandwich: sandwich, bowl: bowl }
            draw[picture.product.shape](context, picture.product.colour)
        }

        function ellipse(c, x, y, rx, ry, colour) {
            c.fillStyle = colour
            c.beginPath()
            c.ellipse(x - rx, y - ry, 2 * rx, 2 * ry)
            c.fill()
        }
        function shape(c, colour, points) {
            c.fillStyle = colour
            c.beginPath()
            c.moveTo(points[0], points[1])
            for (let i = 2; i < points.length; i += 2) c.lineTo(points[i], points[i + 1])
            c.closePath()
            c.fill()
        }
        function steam(c, x) {
            c.strokeStyle = "#66FFFFFF"
            c.lineWidth = 3
            c.beginPath()
            c.moveTo(x, 32)
            c.bezierCurveTo(x - 6, 26, x + 6, 20, x, 12)
            c.stroke()
        }
        function cup(c, colour) {
            steam(c, 40)
            steam(c, 56)
            ellipse(c, 48, 82, 38, 7, "#33000000")
            ellipse(c, 48, 80, 38, 7, "#FFFFFF")
            c.strokeStyle = "#FFFFFF"
            c.lineWidth = 6
            c.beginPath()
            c.arc(76, 54, 10, -Math.PI / 2, Math.PI / 2)
            c.stroke()
            c.fillStyle = "#FFFFFF"
            c.beginPath()
            c.moveTo(20, 42)
            c.lineTo(76, 42)
            c.bezierCurveTo(76, 66, 68, 79, 48, 79)
            c.bezierCurveTo(28, 79, 20, 66, 20, 42)
            c.fill()
            c.fillStyle = "#12000000"
            c.beginPath()
            c.moveTo(56, 42)
            c.lineTo(76, 42)
            c.bezierCurveTo(76, 66, 68, 79, 48, 79)
            c.bezierCurveTo(58, 72, 60, 58, 56, 42)
            c.fill()
            ellipse(c, 48, 42, 28, 7.5, "#F4EEE6")
            ellipse(c, 48, 42, 24.5, 5.6, colour)
            ellipse(c, 45, 42, 11, 2.6, "#55FFFFFF")
        }
        function glass(c, colour) {
            c.strokeStyle = "#D8644A"
            c.lineWidth = 4
            c.beginPath()
            c.moveTo(50, 62)
            c.lineTo(62, 10)
            c.stroke()
            ellipse(c, 50, 90, 22, 4, "#22000000")
            shape(c, "#CCFFFFFF", [26, 22, 74, 22, 66, 90, 34, 90])
            shape(c, colour, [29.5, 36, 70.5, 36, 64, 86, 36, 86])
            ellipse(c, 50, 36, 20.5, 4, Qt.lighter(colour, 1.12))
            shape(c, "#66FFFFFF", [36, 42, 48, 40, 50, 52, 38, 54])
            shape(c, "#55FFFFFF", [52, 50, 62, 53, 59, 64, 49, 61])
            shape(c, "#40FFFFFF", [31, 30, 36, 30, 41, 84, 38, 84])
        }
        function croissant(c, colour) {
            ellipse(c, 50, 79, 38, 5, "#22000000")
            const parts = [[13, 70, 7, 10, -1.2], [87, 70, 7, 10, 1.2], [23, 59, 10, 14, -0.85],
                           [77, 59, 10, 14, 0.85], [36, 50, 11, 17, -0.4], [64, 50, 11, 17, 0.4],
                           [50, 47, 11, 18, 0]]
            parts.forEach((part, index) => {
                c.save()
                c.translate(part[0], part[1])
                c.rotate(part[4])
                ellipse(c, 0, 0, part[2], part[3], Qt.darker(colour, 1.28 - index * 0.035))
                ellipse(c, 0, -part[3] * 0.22, part[2] * 0.78, part[3] * 0.66,
                        Qt.lighter(colour, 1 + index * 0.02))
                c.restore()
            })
        }
        function muffin(c, colour) {
            ellipse(c, 50, 88, 26, 4, "#22000000")
            shape(c, "#8C5A7A", [26, 52, 74, 52, 67, 88, 33, 88])
            for (let x = 32; x < 70; x += 8) shape(c, "#22FFFFFF", [x, 54, x + 3, 54, x + 2, 87, x + 1, 87])
            ellipse(c, 50, 46, 31, 20, Qt.darker(colour, 1.12))
            ellipse(c, 48, 42, 27, 16, colour)
            const berries = [[38, 36], [52, 31], [62, 42], [46, 46], [34, 48], [58, 52]]
            berries.forEach(at => {
                ellipse(c, at[0], at[1], 4.2, 4.2, "#5A3E75")
                ellipse(c, at[0] - 1.2, at[1] - 1.4, 1.2, 1.2, "#88FFFFFF")
            })
        }
        function cookie(c, colour) {
            ellipse(c, 52, 56, 34, 34, "#22000000")
            ellipse(c, 50, 52, 34, 34, Qt.darker(colour, 1.1))
            ellipse(c, 48, 50, 30, 30, colour)
            const chips = [[36, 38], [56, 34], [66, 52], [48, 54], [34, 60], [54, 70], [44, 44]]
            chips.forEach(at => ellipse(c, at[0], at[1], 4.6, 4, "#4A2C1B"))
            const salt = [[44, 34], [60, 44], [40, 52], [58, 60], [46, 64]]
            salt.forEach(at => shape(c, "#EEFFFFFF", [at[0], at[1], at[0] + 3, at[1], at[0] + 3, at[1] + 3, at[0], at[1] + 3]))
        }
        function sandwich(c, colour) {
            ellipse(c, 50, 82, 38, 5, "#22000000")
            c.fillStyle = Qt.darker(colour, 1.1)
            c.fillRect(16, 66, 68, 13)
            shape(c, "#F2C94C", [14, 62, 86, 62, 76, 70, 24, 70])
            c.fillStyle = "#D9523C"
            c.fillRect(18, 55, 64, 8)
            c.fillStyle = "#7FB35A"
            c.beginPath()
            c.moveTo(12, 54)
            for (let x = 12; x < 88; x += 9.5) c.bezierCurveTo(x + 2, 62, x + 7, 62, x + 9.5, 54)
            c.lineTo(84, 48)
            c.lineTo(16, 48)
            c.fill()
            c.fillStyle = colour
            c.beginPath()
            c.moveTo(14, 50)
            c.bezierCurveTo(14, 22, 34, 22, 50, 22)
            c.bezierCurveTo(66, 22, 86, 22, 86, 50)
            c.fill()
            const seeds = [[36, 33], [48, 29], [60, 32], [70, 39], [42, 40], [56, 40]]
            seeds.forEach(at => ellipse(c, at[0], at[1], 2, 1.4, "#FFF4DC"))
        }
        function bowl(c, colour) {
            steam(c, 44)
            steam(c, 58)
            ellipse(c, 50, 84, 28, 5, "#22000000")
            c.fillStyle = "#FFFFFF"
            c.beginPath()
            c.moveTo(12, 46)
            c.lineTo(88, 46)
            c.bezierCurveTo(88, 68, 72, 82, 50, 82)
            c.bezierCurveTo(28, 82, 12, 68, 12, 46)
            c.fill()
            ellipse(c, 50, 46, 38, 10, "#F1E8DF")
            ellipse(c, 50, 46, 33, 7.6, colour)
            ellipse(c, 42, 45, 8, 2, "#66FFFFFF")
            ellipse(c, 58, 47, 3.4, 1.6, "#5E8C4A")
            ellipse(c, 64, 44, 3, 1.4, "#5E8C4A")
        }
    }
}
