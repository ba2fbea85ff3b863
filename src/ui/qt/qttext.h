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

/// A caption as the toolkit's buttons, menus and frames want it: "&" stands before the letter that Alt goes
/// with (0 = none), and "&&" for an "&" that is to be read.
inline QString captionText(const std::string& caption, char letter = 0) {
    QString text = toQt(caption).replace(QLatin1Char('&'), QStringLiteral("&&"));
    if (const auto at = text.indexOf(QLatin1Char(letter), 0, Qt::CaseInsensitive); letter != 0 && at >= 0) {
        text.insert(at, QLatin1Char('&'));
    }
    return text;
}

}  // namespace vek
