#include "translators/view/TranslateScriptView.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "ui/Fonts.h"
#include "ui/GW2TextField.h"
#include "ui/Palette.h"
#include "ui/TextBlock.h"
#include "ui/VerticalScroller.h"

namespace vantor {

namespace {

constexpr int ordinarySize = 22;
constexpr int scriptSize = 32;
constexpr int gap = 4;

// The cells, nine to a row.
class ScriptGridView final : public QWidget {
public:
    ScriptGridView(const QFont& script, QWidget* parent) : QWidget(parent), script_(script) {
        QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setSizePolicy(policy);
        setText({});
    }

    void setText(const QString& typed) {
        rows_ = scriptRows(typed);
        // What a screen reader says, since the cells are drawn.
        QStringList words;
        for (const auto& row : rows_) words += QStringList(row.begin(), row.end()).join(QLatin1Char(' '));
        setAccessibleName(words.join(QLatin1Char('\n')));
        setFixedHeight(static_cast<int>(rows_.size()) * (cellHeight() + gap));
        update();
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        const double width = (this->width() + gap) / static_cast<double>(charactersPerRow);
        for (std::size_t row = 0; row < rows_.size(); ++row)
            for (std::size_t column = 0; column < rows_[row].size(); ++column) {
                const QRectF cell(static_cast<double>(column) * width, static_cast<double>(row) * (cellHeight() + gap),
                                  width - gap, cellHeight());
                if (cell.intersects(event->rect())) paintCell(painter, cell, rows_[row][column]);
            }
    }

private:
    [[nodiscard]] int ordinaryHeight() const { return QFontMetrics(sansFont(ordinarySize)).height() + 4; }
    [[nodiscard]] int cellHeight() const { return ordinaryHeight() + QFontMetrics(script_).height() + 10; }

    void paintCell(QPainter& painter, const QRectF& cell, const QString& character) const {
        painter.fillRect(cell, palette::withAlpha(Qt::black, 0.24));
        const QRectF upper(cell.left(), cell.top() + 2, cell.width(), ordinaryHeight());
        painter.fillRect(QRectF(cell.left() + 10, upper.bottom() + 1, cell.width() - 20, 1),
                         palette::withAlpha(palette::line, 0.16));
        painter.setFont(sansFont(ordinarySize));
        painter.setPen(palette::warmWhite);
        painter.drawText(upper, Qt::AlignCenter, character);
        painter.setFont(script_);
        painter.setPen(palette::gold);
        painter.drawText(QRectF(cell.left(), upper.bottom() + 2, cell.width(), cell.bottom() - upper.bottom() - 4),
                         Qt::AlignCenter, character);
    }

    QFont script_;
    std::vector<std::vector<QString>> rows_;
};

QString familyOf(const Script& script) {
    return QString::fromUtf8(script.fontName.data(), static_cast<qsizetype>(script.fontName.size()));
}

QFont scriptFont(const Script& script, bool present) {
    QFont font = present ? QFont(familyOf(script)) : sansFont(scriptSize);
    font.setPixelSize(scriptSize);
    return font;
}

}  // namespace

TranslateScriptView::TranslateScriptView(const Script& script, const TranslatorNeeds& needs, QWidget* parent)
    : QWidget(parent) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 6, 0, 0);
    column->setSpacing(10);
    auto* const field = new GW2TextField(QStringLiteral("Custom text"), this);
    field->setClearable(true);
    column->addWidget(field);
    const bool present = needs.hasFont(script);
    if (!present)
        column->addWidget(new TextBlock(
            TextRole::second,
            QStringLiteral(
                "The font “%1” is not here, so an ordinary one stands in. Put its file into %2 and start Vantor "
                "again.")
                .arg(familyOf(script), needs.fontFolder),
            this));
    auto* const scroller = new VerticalScroller(this);
    auto* const grid = new ScriptGridView(scriptFont(script, present), scroller);
    scroller->setContent(grid);
    column->addWidget(scroller, 1);
    QObject::connect(field, &QLineEdit::textChanged, grid, [grid](const QString& typed) { grid->setText(typed); });
}

}  // namespace vantor
