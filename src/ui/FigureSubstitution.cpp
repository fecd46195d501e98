#include "ui/FigureSubstitution.h"

#include <QtGui/QFont>
#include <QtGui/QGlyphRun>
#include <QtGui/QPainter>
#include <optional>

namespace vantor {

namespace {

// Big-endian numbers; zero beyond the end, which no valid place in the table can be.
class Table {
public:
    explicit Table(const QByteArray& bytes) : bytes_(bytes) {}
    [[nodiscard]] quint32 u16(qsizetype at) const { return byte(at) << 8 | byte(at + 1); }
    [[nodiscard]] quint32 u32(qsizetype at) const { return u16(at) << 16 | u16(at + 2); }
    [[nodiscard]] bool tagIs(qsizetype at, const char* tag) const {
        return at >= 0 && at + 4 <= bytes_.size() && bytes_.mid(at, 4) == tag;
    }

private:
    [[nodiscard]] quint32 byte(qsizetype at) const {
        return at >= 0 && at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : 0;
    }
    const QByteArray& bytes_;
};

std::optional<quint32> coverageIndex(const Table& table, qsizetype coverage, quint32 glyph) {
    const quint32 count = table.u16(coverage + 2);
    for (quint32 i = 0; i < count; ++i) {
        if (table.u16(coverage) == 1) {
            if (table.u16(coverage + 4 + 2 * i) == glyph) return i;
        } else {
            const qsizetype range = coverage + 4 + 6 * i;
            const quint32 first = table.u16(range);
            if (glyph >= first && glyph <= table.u16(range + 2)) return table.u16(range + 4) + glyph - first;
        }
    }
    return std::nullopt;
}

std::optional<quint32> substitute(const Table& table, qsizetype lookup, quint32 glyph) {
    const quint32 count = table.u16(lookup + 4);
    for (quint32 i = 0; i < count; ++i) {
        qsizetype sub = lookup + table.u16(lookup + 6 + 2 * i);
        quint32 type = table.u16(lookup);
        if (type == 7) {  // an extension names the real type and place
            type = table.u16(sub + 2);
            sub += table.u32(sub + 4);
        }
        if (type != 1) continue;
        const auto index = coverageIndex(table, sub + table.u16(sub + 2), glyph);
        if (!index) continue;
        if (table.u16(sub) == 1) return (glyph + table.u16(sub + 4)) & 0xFFFFU;
        if (*index < table.u16(sub + 4)) return table.u16(sub + 6 + 2 * *index);
    }
    return std::nullopt;
}

}  // namespace

quint32 substitutedGlyph(const QByteArray& bytes, const char* feature, quint32 glyph) {
    const Table table(bytes);
    const qsizetype features = table.u16(6);
    const qsizetype lookups = table.u16(8);
    for (quint32 i = 0; i < table.u16(features); ++i) {
        const qsizetype record = features + 2 + 6 * i;
        if (!table.tagIs(record, feature)) continue;
        const qsizetype found = features + table.u16(record + 4);
        for (quint32 j = 0; j < table.u16(found + 2); ++j) {
            const quint32 lookup = table.u16(found + 4 + 2 * j);
            if (const auto other = substitute(table, lookups + table.u16(lookups + 2 + 2 * lookup), glyph))
                return *other;
        }
    }
    return glyph;
}

void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text) {
    const QRawFont raw = QRawFont::fromFont(font);
    const QByteArray table = raw.fontTable("GSUB");
    QList<quint32> glyphs = raw.glyphIndexesForString(text);
    for (quint32& glyph : glyphs)
        for (const char* feature : {"lnum", "tnum"}) glyph = substitutedGlyph(table, feature, glyph);
    const QList<QPointF> advances = raw.advancesForGlyphIndexes(glyphs);
    QList<QPointF> positions;
    QPointF place;
    for (const QPointF& advance : advances) {
        positions << place;
        place += advance;
    }
    QGlyphRun run;
    run.setRawFont(raw);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    painter.drawGlyphRun(rightOnBaseLine - QPointF(place.x(), 0), run);
}

}  // namespace vantor
