// The Count of a button bar or record editor as a damaged or hand-edited format file gives it: rows
// past the last numbered section are default rows, and no count makes the window build rows without end.
#include "controls/ButtonFormat.h"
#include "controls/FieldFormat.h"
#include "controls/ViewFormat.h"
#include "support/TempAppDir.h"
#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace td;

namespace {

struct CountCase {
    const char* name;
    const char* sections;     // behind "[Buttons]\nCount=..." or "[Fields]\nCount=..."
    const char* count;
    std::size_t rows;         // rows read
    std::vector<int> named;   // 0-based rows that come from a section of the file ("x<n>")
};

const CountCase kCases[] = {
    {"AsManyAsSections", "[#1]\nClass=x1\n[#2]\nClass=x2\n", "2", 2, {0, 1}},
    {"MoreThanSections", "[#1]\nClass=x1\n", "4", 4, {0}},
    {"GapsKeepTheirPlace", "[#1]\nClass=x1\n[#5]\nClass=x5\n", "6", 6, {0, 4}},
    {"SectionPastTheCountIsNotRead", "[#1]\nClass=x1\n[#9]\nClass=x9\n", "3", 3, {0}},
    {"LeadingZeroIsAnotherSection", "[#05]\nClass=x5\n", "6", 6, {}},
    {"CaseOfTheNameDoesNotMatter", "[#2]\nClass=x2\n", "3", 3, {1}},
    {"NoCount", "[#1]\nClass=x1\n", "", 0, {}},
    {"NegativeCount", "[#1]\nClass=x1\n", "-3", 0, {}},
    {"HugeCountStopsAtTheMost", "[#1]\nClass=x1\n[#40000]\nClass=x40000\n", "2000000000", 32767, {0}},
};

QString formatText(const CountCase& c, const char* head, const char* section)
{
    QString text = QString::fromLatin1(c.sections).replace(u'#', QLatin1String(section));
    if (QLatin1String(c.name) == QLatin1String("CaseOfTheNameDoesNotMatter"))
        text = text.toUpper().replace(QStringLiteral("CLASS=X"), QStringLiteral("Class=x"));
    return QStringLiteral("[%1]\nCount=%2\n").arg(QLatin1String(head), QLatin1String(c.count)) + text;
}

bool isNamed(const CountCase& c, std::size_t row)
{
    return std::find(c.named.begin(), c.named.end(), int(row)) != c.named.end();
}

class FormatCount : public ::testing::TestWithParam<CountCase> {
protected:
    // Reads the case's format file with read, which must answer in moments whatever the count says.
    template <typename Read>
    auto readFormat(const char* head, const char* section, Read read)
    {
        const QString text = formatText(GetParam(), head, section);
        const QString file = dir_.write(QStringLiteral("List.ini"), text.toUtf8());
        QElapsedTimer clock;
        clock.start();
        auto rows = read(file);
        EXPECT_LT(clock.elapsed(), 5000);
        return rows;
    }

    test::TempAppDir dir_;
};

TEST_P(FormatCount, ButtonsPastTheLastSectionAreDefaults)
{
    const CountCase& c = GetParam();
    const std::vector<ButtonItem> buttons = readFormat("Buttons", "Button", ReadButtonFormat);
    ASSERT_EQ(buttons.size(), c.rows);
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        const QString expected = isNamed(c, i) ? QStringLiteral("x%1").arg(i + 1) : QString();
        EXPECT_EQ(buttons[i].Class, expected) << "row " << i;
        EXPECT_TRUE(buttons[i].Enabled && buttons[i].Visible) << "row " << i;
        EXPECT_EQ(buttons[i].BackColor, kSysButtonFace) << "row " << i;
    }
}

TEST_P(FormatCount, FieldsPastTheLastSectionAreDefaults)
{
    const CountCase& c = GetParam();
    const FieldFormat format = readFormat("Fields", "Field", ReadFieldFormat);
    ASSERT_EQ(format.Fields.size(), c.rows);
    for (std::size_t i = 0; i < format.Fields.size(); ++i) {
        const QString expected = isNamed(c, i) ? QStringLiteral("x%1").arg(i + 1) : QString();
        EXPECT_EQ(format.Fields[i].Class, expected) << "row " << i;
        EXPECT_TRUE(format.Fields[i].Enabled) << "row " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Counts, FormatCount, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<CountCase>& info) {
                             return std::string(info.param.name);
                         });

}  // namespace
