#pragma once

#include <QString>
#include <string>

namespace vek {

inline QString toQt(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

inline std::string fromQt(const QString& text) {
    return text.toStdString();
}

}  // namespace vek
