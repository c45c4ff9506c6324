#include "Kifo_iOS_Common_Kit/device/ModelNames.h"

#include <algorithm>
#include <array>

namespace kifo {
namespace {

struct Model {
  std::string_view identifier;
  std::string_view name;
};

/// In the order of the identifiers' bytes. The odd spellings and capitals are kept for
/// compatibility.
constexpr std::array kModels{
    Model{"iPad1,1", "iPad"},
    Model{"iPad1,2", "iPad 3G"},
    Model{"iPad11,1", "iPad mini 5th Gen (WiFi)"},
    Model{"iPad11,2", "iPad mini 5th Gen"},
    Model{"iPad11,3", "iPad Air 3rd Gen (WiFi)"},
    Model{"iPad11,4", "iPad Air 3rd Gen"},
    Model{"iPad11,6", "iPad 8th Gen (WiFi)"},
    Model{"iPad11,7", "iPad 8th Gen (WiFi+Cellular)"},
    Model{"iPad12,1", "iPad 9th Gen (WiFi)"},
    Model{"iPad12,2", "iPad 9th Gen (WiFi+Cellular)"},
    Model{"iPad13,1", "iPad Air 4th Gen (WiFi)"},
    Model{"iPad13,10", "iPad Pro 12.9 inch 5th Gen"},
    Model{"iPad13,11", "iPad Pro 12.9 inch 5th Gen"},
    Model{"iPad13,2", "iPad Air 4th Gen (WiFi+Cellular)"},
    Model{"iPad13,4", "iPad Pro 11 inch 5th Gen"},
    Model{"iPad13,5", "iPad Pro 11 inch 5th Gen"},
    Model{"iPad13,6", "iPad Pro 11 inch 5th Gen"},
    Model{"iPad13,7", "iPad Pro 11 inch 5th Gen"},
    Model{"iPad13,8", "iPad Pro 12.9 inch 5th Gen"},
    Model{"iPad13,9", "iPad Pro 12.9 inch 5th Gen"},
    Model{"iPad14,1", "iPad mini 6th Gen (WiFi)"},
    Model{"iPad14,2", "iPad mini 6th Gen (WiFi+Cellular)"},
    Model{"iPad2,1", "2nd Gen iPad"},
    Model{"iPad2,2", "2nd Gen iPad GSM"},
    Model{"iPad2,3", "2nd Gen iPad CDMA"},
    Model{"iPad2,4", "2nd Gen iPad New Revision"},
    Model{"iPad2,5", "iPad mini"},
    Model{"iPad2,6", "iPad mini GSM+LTE"},
    Model{"iPad2,7", "iPad mini CDMA+LTE"},
    Model{"iPad3,1", "3rd Gen iPad"},
    Model{"iPad3,2", "3rd Gen iPad CDMA"},
    Model{"iPad3,3", "3rd Gen iPad GSM"},
    Model{"iPad3,4", "4th Gen iPad"},
    Model{"iPad3,5", "4th Gen iPad GSM+LTE"},
    Model{"iPad3,6", "4th Gen iPad CDMA+LTE"},
    Model{"iPad4,1", "iPad Air (WiFi)"},
    Model{"iPad4,2", "iPad Air (GSM+CDMA)"},
    Model{"iPad4,3", "1st Gen iPad Air (China)"},
    Model{"iPad4,4", "iPad mini Retina (WiFi)"},
    Model{"iPad4,5", "iPad mini Retina (GSM+CDMA)"},
    Model{"iPad4,6", "iPad mini Retina (China)"},
    Model{"iPad4,7", "iPad mini 3 (WiFi)"},
    Model{"iPad4,8", "iPad mini 3 (GSM+CDMA)"},
    Model{"iPad4,9", "iPad Mini 3 (China)"},
    Model{"iPad5,1", "iPad mini 4 (WiFi)"},
    Model{"iPad5,2", "4th Gen iPad mini (WiFi+Cellular)"},
    Model{"iPad5,3", "iPad Air 2 (WiFi)"},
    Model{"iPad5,4", "iPad Air 2 (Cellular)"},
    Model{"iPad6,11", "iPad (2017)"},
    Model{"iPad6,12", "iPad (2017)"},
    Model{"iPad6,3", "iPad Pro (9.7 inch, WiFi)"},
    Model{"iPad6,4", "iPad Pro (9.7 inch, WiFi+LTE)"},
    Model{"iPad6,7", "iPad Pro (12.9 inch, WiFi)"},
    Model{"iPad6,8", "iPad Pro (12.9 inch, WiFi+LTE)"},
    Model{"iPad7,1", "iPad Pro 2nd Gen (WiFi)"},
    Model{"iPad7,11", "iPad 7th Gen 10.2-inch (WiFi)"},
    Model{"iPad7,12", "iPad 7th Gen 10.2-inch (WiFi+Cellular)"},
    Model{"iPad7,2", "iPad Pro 2nd Gen (WiFi+Cellular)"},
    Model{"iPad7,3", "iPad Pro 10.5-inch 2nd Gen"},
    Model{"iPad7,4", "iPad Pro 10.5-inch 2nd Gen"},
    Model{"iPad7,5", "iPad 6th Gen (WiFi)"},
    Model{"iPad7,6", "iPad 6th Gen (WiFi+Cellular)"},
    Model{"iPad8,1", "iPad Pro 11 inch 3rd Gen (WiFi)"},
    Model{"iPad8,10", "iPad Pro 11 inch 4th Gen (WiFi+Cellular)"},
    Model{"iPad8,11", "iPad Pro 12.9 inch 4th Gen (WiFi)"},
    Model{"iPad8,12", "iPad Pro 12.9 inch 4th Gen (WiFi+Cellular)"},
    Model{"iPad8,2", "iPad Pro 11 inch 3rd Gen (1TB, WiFi)"},
    Model{"iPad8,3", "iPad Pro 11 inch 3rd Gen (WiFi+Cellular)"},
    Model{"iPad8,4", "iPad Pro 11 inch 3rd Gen (1TB, WiFi+Cellular)"},
    Model{"iPad8,5", "iPad Pro 12.9 inch 3rd Gen (WiFi)"},
    Model{"iPad8,6", "iPad Pro 12.9 inch 3rd Gen (1TB, WiFi)"},
    Model{"iPad8,7", "iPad Pro 12.9 inch 3rd Gen (WiFi+Cellular)"},
    Model{"iPad8,8", "iPad Pro 12.9 inch 3rd Gen (1TB, WiFi+Cellular)"},
    Model{"iPad8,9", "iPad Pro 11 inch 4th Gen (WiFi)"},
    Model{"iPhone1,1", "iPhone"},
    Model{"iPhone1,2", "iPhone 3G"},
    Model{"iPhone10,1", "iPhone 8"},
    Model{"iPhone10,2", "iPhone 8 Plus"},
    Model{"iPhone10,3", "iPhone X Global"},
    Model{"iPhone10,4", "iPhone 8"},
    Model{"iPhone10,5", "iPhone 8 Plus"},
    Model{"iPhone10,6", "iPhone X GSM"},
    Model{"iPhone11,2", "iPhone XS"},
    Model{"iPhone11,4", "iPhone XS Max"},
    Model{"iPhone11,6", "iPhone XS Max Global"},
    Model{"iPhone11,8", "iPhone XR"},
    Model{"iPhone12,1", "iPhone 11"},
    Model{"iPhone12,3", "iPhone 11 Pro"},
    Model{"iPhone12,5", "iPhone 11 Pro Max"},
    Model{"iPhone12,8", "iPhone SE 2nd Gen"},
    Model{"iPhone13,1", "iPhone 12 Mini"},
    Model{"iPhone13,2", "iPhone 12"},
    Model{"iPhone13,3", "iPhone 12 Pro"},
    Model{"iPhone13,4", "iPhone 12 Pro Max"},
    Model{"iPhone14,2", "iPhone 13 Pro"},
    Model{"iPhone14,3", "iPhone 13 Pro Max"},
    Model{"iPhone14,4", "iPhone 13 Mini"},
    Model{"iPhone14,5", "iPhone 13"},
    Model{"iPhone14,7", "iPhone 14"},
    Model{"iPhone14,8", "iPhone 14 Plus"},
    Model{"iPhone15,2", "iPhone 14 Pro"},
    Model{"iPhone15,3", "iPhone 14 Pro Max"},
    Model{"iPhone2,1", "iPhone 3GS"},
    Model{"iPhone3,1", "iPhone 4"},
    Model{"iPhone3,2", "iPhone 4 GSM Rev A"},
    Model{"iPhone3,3", "iPhone 4 CDMA"},
    Model{"iPhone4,1", "iPhone 4S"},
    Model{"iPhone5,1", "iPhone 5 (GSM)"},
    Model{"iPhone5,2", "iPhone 5 (GSM+CDMA)"},
    Model{"iPhone5,3", "iPhone 5C (GSM)"},
    Model{"iPhone5,4", "iPhone 5C (Global)"},
    Model{"iPhone6,1", "iPhone 5S (GSM)"},
    Model{"iPhone6,2", "iPhone 5S (Global)"},
    Model{"iPhone7,1", "iPhone 6 Plus"},
    Model{"iPhone7,2", "iPhone 6"},
    Model{"iPhone8,1", "iPhone 6s"},
    Model{"iPhone8,2", "iPhone 6s Plus"},
    Model{"iPhone8,4", "iPhone SE (GSM)"},
    Model{"iPhone9,1", "iPhone 7"},
    Model{"iPhone9,2", "iPhone 7 Plus"},
    Model{"iPhone9,3", "iPhone 7"},
    Model{"iPhone9,4", "iPhone 7 Plus"},
    Model{"iPod1,1", "1st Gen iPod"},
    Model{"iPod2,1", "2nd Gen iPod"},
    Model{"iPod3,1", "3rd Gen iPod"},
    Model{"iPod4,1", "4th Gen iPod"},
    Model{"iPod5,1", "5th Gen iPod"},
    Model{"iPod7,1", "6th Gen iPod"},
    Model{"iPod9,1", "7th Gen iPod"},
};

static_assert(std::is_sorted(kModels.begin(), kModels.end(), [](const Model& a, const Model& b) {
  return a.identifier < b.identifier;
}));

}  // namespace

std::optional<std::string_view> marketingName(std::string_view identifier) {
  const auto* found = std::lower_bound(
      kModels.begin(), kModels.end(), identifier,
      [](const Model& model, std::string_view sought) { return model.identifier < sought; });
  if (found == kModels.end() || found->identifier != identifier) return std::nullopt;
  return found->name;
}

}  // namespace kifo
