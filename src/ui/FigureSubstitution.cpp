#include "ui/FigureSubstitution.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace vantor {

namespace {

constexpr qsizetype tagLength = 4;
// Required ligatures and required contextual alternates: shaping applies both without being asked.
constexpr std::array<std::pair<const char*, const char*>, 2> renamed{{{"lnum", "rlig"}, {"tnum", "rclt"}}};

// Big-endian; zero beyond the end.
quint32 number(const QByteArray& bytes, qsizetype at, int length) {
    if (at < 0 || at + length > bytes.size()) return 0;
    quint32 value = 0;
    for (int i = 0; i < length; ++i) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

bool tagIs(const QByteArray& bytes, qsizetype at, const char* tag) {
    return at >= 0 && at + tagLength <= bytes.size() && std::memcmp(bytes.constData() + at, tag, tagLength) == 0;
}

// Where the table begins; 0 for none.
qsizetype tableOf(const QByteArray& face, const char* tag) {
    const quint32 count = number(face, 4, 2);
    for (quint32 i = 0; i < count; ++i) {
        const qsizetype record = 12 + 16 * static_cast<qsizetype>(i);
        if (tagIs(face, record, tag)) return number(face, record + 8, 4);
    }
    return 0;
}

}  // namespace

QByteArray withLiningFigures(QByteArray face) {
    const qsizetype table = tableOf(face, "GSUB");
    if (table == 0) return face;
    const qsizetype features = table + number(face, table + 6, 2);
    const quint32 count = number(face, features, 2);
    const auto each = [&](const auto& visit) {
        for (quint32 i = 0; i < count; ++i) visit(features + 2 + 6 * static_cast<qsizetype>(i));
    };
    for (const auto& [from, to] : renamed) {
        // A face that uses the name already would have two features of it, and only the first counts.
        bool taken = false;
        each([&](qsizetype record) { taken = taken || tagIs(face, record, to); });
        if (taken) continue;
        each([&](qsizetype record) {
            if (tagIs(face, record, from)) face.replace(record, tagLength, to, tagLength);
        });
    }
    return face;
}

void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text) {
    painter.setFont(font);
    painter.drawText(rightOnBaseLine - QPointF(QFontMetricsF(font).horizontalAdvance(text), 0), text);
}

}  // namespace vantor
