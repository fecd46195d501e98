#include "ui/FigureSubstitution.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QRawFont>
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace vantor {

namespace {

constexpr qsizetype tagLength = 4;
// Required variation alternates and required ligatures: shaping applies both without being asked, and in this order.
constexpr std::array<std::pair<const char*, const char*>, 2> renamed{{{"lnum", "rvrn"}, {"tnum", "rlig"}}};

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

struct Table {
    qsizetype start = 0;  // 0: there is none
    qsizetype length = 0;
};

Table tableOf(const QByteArray& face, const char* tag) {
    const quint32 count = number(face, 4, 2);
    for (quint32 i = 0; i < count; ++i) {
        const qsizetype record = 12 + 16 * static_cast<qsizetype>(i);
        if (tagIs(face, record, tag)) return {number(face, record + 8, 4), number(face, record + 12, 4)};
    }
    return {};
}

QByteArray bigEndian(const QString& text) {
    QByteArray bytes;
    for (const QChar letter : text)
        bytes.append(static_cast<char>(letter.unicode() >> 8)).append(static_cast<char>(letter.unicode() & 0xFF));
    return bytes;
}

}  // namespace

QByteArray withLiningFigures(QByteArray face) {
    const qsizetype table = tableOf(face, "GSUB").start;
    if (table == 0) return face;
    const qsizetype features = table + number(face, table + 6, 2);
    const quint32 count = number(face, features, 2);
    const auto each = [&](const auto& visit) {
        for (quint32 i = 0; i < count; ++i) visit(features + 2 + 6 * static_cast<qsizetype>(i));
    };
    for (const auto& renaming : renamed) {
        const char* const from = renaming.first;
        const char* const to = renaming.second;
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

QByteArray withFamilyName(QByteArray face, const QString& family) {
    const QString before = QRawFont(face, 16).familyName();
    const Table names = tableOf(face, "name");
    if (before.isEmpty() || names.start == 0 || names.start + names.length > face.size()) return face;
    const QString after = family.leftJustified(before.size(), QLatin1Char('.'), true);
    QByteArray table = face.mid(names.start, names.length);
    table.replace(bigEndian(before), bigEndian(after));
    table.replace(before.toLatin1(), after.toLatin1());
    return face.replace(names.start, names.length, table);
}

void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text) {
    painter.setFont(font);
    painter.drawText(rightOnBaseLine - QPointF(QFontMetricsF(font).horizontalAdvance(text), 0), text);
}

}  // namespace vantor
