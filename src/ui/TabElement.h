#pragma once
// One tab of a row or column: an image if it has one, and a text. Main thread.

#include <QtCore/QString>

#include "ui/Pressable.h"

namespace vantor {

class TabElement : public Pressable {
public:
    // The image's other state is named with ".selected".
    TabElement(const QString& text, QString image, QWidget* parent);

    // A count beside the text; empty for none.
    void setBadge(const QString& text);
    [[nodiscard]] const QString& badge() const { return badge_; }
    // In a column the chosen tab is marked at its left edge, else below.
    void setColumn(bool column);
    // Only its image and badge, with the text as a tool tip; not for a tab without an image.
    void setCompact(bool compact);
    // Not where the row itself marks the chosen tab.
    void setOwnMark(bool own) { ownMark_ = own; }

    // With its text, whether or not it is compact now.
    [[nodiscard]] int fullWidth() const;
    [[nodiscard]] int leastWidth() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QString shownText() const { return compact_ ? QString() : text(); }
    [[nodiscard]] int contentWidth(const QString& shown) const;
    void paintMark(QPainter& painter) const;

    QString image_;
    QString badge_;
    bool column_ = false;
    bool compact_ = false;
    bool ownMark_ = true;
};

}  // namespace vantor
