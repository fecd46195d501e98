// What a script translator shows.

#include "translators/ScriptGrid.h"

#include <gtest/gtest.h>

#include <QtCore/QStringList>

namespace vantor {
namespace {

std::string drawn(const QString& typed) {
    QStringList rows;
    for (const auto& row : scriptRows(typed)) rows += QStringList(row.begin(), row.end()).join(QLatin1Char('|'));
    return rows.join(QLatin1Char('/')).toStdString();
}

TEST(ScriptGridTest, CutsTheTypedTextIntoRowsOfNineCells) {
    const std::pair<QString, std::string> rows[] = {
        {{}, "A|B|C|D|E|F|G|H|I/J|K|L|M|N|O|P|Q|R/S|T|U|V|W|X|Y|Z|0/1|2|3|4|5|6|7|8|9"},
        {QStringLiteral("a"), "a"},
        {QStringLiteral("a b,Cdefgh"), "a| |b|,|C|d|e|f|g/h"},
        {QStringLiteral("123456789"), "1|2|3|4|5|6|7|8|9"},
        // Beside Thai or Indian script too.
        {QStringLiteral("ก👍🏽स"), "ก|👍🏽|स"},
        {QStringLiteral("x👨‍👩‍👧‍👦é"), "x|👨‍👩‍👧‍👦|é"},
    };
    for (const auto& [typed, expected] : rows) EXPECT_EQ(drawn(typed), expected);
}

}  // namespace
}  // namespace vantor
