#pragma once

#include <QTranslator>

namespace vek {

/// The German texts of the toolkit's own dialogs and menus, as far as this program shows them.
class GermanTexts : public QTranslator {
    Q_OBJECT

  public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* sourceText, const char* disambiguation,
                      int count) const override;
    bool isEmpty() const override { return false; }
};

}  // namespace vek
