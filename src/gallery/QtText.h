#pragma once

#include <QString>

#include <string_view>

namespace quellton {

inline QString qtText(std::string_view text) { return QString::fromUtf8(text.data(), qsizetype(text.size())); }

}  // namespace quellton
