#include "window/labels/LineNames.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

class LineNamesTest : public testing::Test {
protected:
    LineNamesTest() : font(QGuiApplication::font()), metrics(Small(font)), height(metrics.height() - 2) {}

    [[nodiscard]] static QFont Small(QFont& font) {
        font.setPixelSize(11);
        return font;
    }
    /// Lines of ports that lie on the axis as acquisition lays them, named by `form`.
    [[nodiscard]] static std::vector<LineName> Lines(int ports, const QString& form = u"DI %1:%2"_s) {
        std::vector<LineName> names;
        for (int i = 0; i < 8 * ports; ++i)
            names.push_back({form.arg(i / 8).arg(i % 8), 1.5 * i + 3 * (i / 8), 0xffffffff});
        return names;
    }
    /// Columns and rows of no two labels touch.
    void ExpectApart(const NameBlock& block) const {
        for (const NameLabel& a : block.labels)
            for (const NameLabel& b : block.labels) {
                const bool sameColumn = a.column < b.column + b.width && b.column < a.column + a.width;
                if (&a != &b && sameColumn) {
                    EXPECT_GE(std::abs(a.row - b.row), height)
                        << a.text.toStdString() << " " << b.text.toStdString();
                }
            }
    }

    QFont font;
    QFontMetrics metrics;
    int height;
};

TEST_F(LineNamesTest, WholeNamesStandOneAboveTheOtherWhereTheyFit) {
    const NameBlock block = ArrangeNames(Lines(1), RowScale(-1, 29, 500), metrics, height, 300);
    ASSERT_EQ(block.labels.size(), 8U);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(block.labels[i].text, u"DI 0:%1"_s.arg(i));
        EXPECT_EQ(block.labels[i].column, 0);
        EXPECT_NEAR(block.labels[i].row, (29 - 1.5 * static_cast<double>(i) - 0.5) * 499 / 30 + 0.5, 1e-9);
    }
    EXPECT_EQ(block.width, metrics.horizontalAdvance(u"DI 0:0"_s));
}

TEST_F(LineNamesTest, EveryLineIsToldHoweverCloseTheyAre) {
    for (const int ports : {1, 2, 4, 12})
        for (const int rows : {200, 480, 830, 1990}) {
            SCOPED_TRACE(std::to_string(ports) + " ports, " + std::to_string(rows) + " rows");
            const NameBlock block =
                ArrangeNames(Lines(ports), RowScale(-1, 30 * ports - 1, rows), metrics, height, 100'000);
            ExpectApart(block);
            std::multiset<double> named;
            std::multiset<QString> prefixes;
            for (const NameLabel& label : block.labels) {
                EXPECT_LE(label.column + label.width, block.width);
                if (label.text.endsWith(u':')) {
                    prefixes.insert(label.text);
                    continue;
                }
                const double exact = 30 * ports - 1 - (label.row - 0.5) * 30 * ports / (rows - 1) - 0.5;
                const double level = std::round(2 * exact) / 2;
                EXPECT_NEAR(exact, level, 1e-6);
                const auto port = static_cast<int>(level / 15);
                const auto line = static_cast<int>((level - 15 * port) / 1.5);
                EXPECT_EQ(level, 15 * port + 1.5 * line);
                const QString whole = u"DI %1:%2"_s.arg(port).arg(line);
                EXPECT_TRUE(label.text == whole || label.text == QString::number(line))
                    << label.text.toStdString();
                named.insert(level);
            }
            EXPECT_EQ(named.size(), static_cast<std::size_t>(8 * ports));
            if (!prefixes.empty()) {
                EXPECT_EQ(prefixes.size(), static_cast<std::size_t>(ports));
            }
        }
}

TEST_F(LineNamesTest, LinesOfAPortStandAsAStaircase) {
    const NameBlock block = ArrangeNames(Lines(12), RowScale(-1, 359, 480), metrics, height, 300);
    ASSERT_EQ(block.labels.size(), 96U + 12);
    EXPECT_LT(block.width, 150);
    for (std::size_t i = 0; i < 96; ++i) {
        EXPECT_EQ(block.labels[i].text, QString::number(i % 8));
        EXPECT_EQ(block.labels[i].column, block.labels[i % 8].column);
    }
    EXPECT_EQ(block.labels[96].text, u"DI 0:"_s);
    EXPECT_NEAR(block.labels[96].row, (block.labels[0].row + block.labels[7].row) / 2, 1e-9);
}

TEST_F(LineNamesTest, NamesWithNothingInCommonAreStaggeredWhole) {
    const std::vector<LineName> names = {{u"Pump"_s, 0, 1}, {u"Valve"_s, 1.5, 2}, {u"Door"_s, 3, 3}};
    const NameBlock block = ArrangeNames(names, RowScale(-1, 59, 400), metrics, height, 300);
    ASSERT_EQ(block.labels.size(), 3U);
    ExpectApart(block);
    EXPECT_EQ(block.labels[1].text, u"Valve"_s);
    EXPECT_EQ(block.labels[1].color, 2U);
    EXPECT_GT(block.labels[1].column, block.labels[0].column);
}

TEST_F(LineNamesTest, LongNamesAreShortenedNotLeftOut) {
    std::vector<LineName> names = Lines(4, u"%1 %2 valve of the cooling water supply"_s);
    for (LineName& name : names)
        name.text += QString::number(name.level);
    const NameBlock block = ArrangeNames(names, RowScale(-1, 119, 480), metrics, height, 250);
    EXPECT_LE(block.width, 250);
    EXPECT_GE(block.labels.size(), 32U);
    ExpectApart(block);
    for (const NameLabel& label : block.labels)
        EXPECT_FALSE(label.text.isEmpty());
}

TEST_F(LineNamesTest, GroupOfSeveralColoursHasANeutralOne) {
    std::vector<LineName> names = Lines(2);
    names[3].color = 0xffff0000;
    const NameBlock block = ArrangeNames(names, RowScale(-1, 59, 200), metrics, height, 300);
    ASSERT_EQ(block.labels.size(), 18U);
    EXPECT_EQ(block.labels[3].color, 0xffff0000U);
    EXPECT_NE(block.labels[16].color, 0xffffffffU);
    EXPECT_EQ(block.labels[17].color, 0xffffffffU);
}

TEST_F(LineNamesTest, ManyThousandLinesAreAllNamed) {
    const NameBlock block = ArrangeNames(Lines(8000), RowScale(-1, 239'999, 480), metrics, height, 300);
    EXPECT_EQ(block.labels.size(), 72'000U);
}

TEST_F(LineNamesTest, NoNamesTakeNoRoom) {
    const NameBlock block = ArrangeNames({}, RowScale(-1, 29, 480), metrics, height, 250);
    EXPECT_TRUE(block.labels.empty());
    EXPECT_EQ(block.width, 0);
}

TEST_F(LineNamesTest, DarkColoursAreBrightenedBrightOnesKept) {
    for (const QRgb kept : {0xffffffffU, 0xffffff00U, 0xff00ff00U, 0xffff0000U, 0xffff8080U})
        EXPECT_EQ(ReadableOnChart(kept), kept);
    for (const QRgb dark : {0xff000000U, 0xff000080U, 0xff0000ffU, 0xff800000U, 0xff404040U}) {
        const QRgb readable = ReadableOnChart(dark);
        EXPECT_GT(qGray(readable), 85);
        EXPECT_LT(qGray(readable), 160) << "no brighter than needed";
        EXPECT_EQ(qBlue(readable) > qRed(readable) + 20, qBlue(dark) > qRed(dark)) << "still of its hue";
    }
}

} // namespace
} // namespace tracelet
