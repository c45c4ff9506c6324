#pragma once

#include <string>
#include <string_view>

namespace kifo {

/// Whether `text` is a URL, relative ones included: not empty, made only of the characters that a
/// URL may hold, every "%" followed by two hexadecimal digits, and with a sound scheme and port if
/// it has them.
bool isUrl(std::string_view text);

/// Appends `text` so that only letters, digits and "-._~" stay bare.
void appendPercentEncoded(std::string& target, std::string_view text);

}  // namespace kifo
