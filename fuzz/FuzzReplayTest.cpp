// Every seed and every input that once found a fault goes through its target again, in every build:
// a fault that comes back fails here without a fuzzer.
#include "fuzz/FuzzTargets.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace td::fuzz {
namespace {

QStringList inputsOf(const QString& folder)
{
    QStringList files;
    const QDir dir(QStringLiteral(TUNEDESK_FUZZ_DIR) + u'/' + folder);
    for (const QString& name : dir.entryList(QDir::Files, QDir::Name))
        files << dir.filePath(name);
    return files;
}

class Replay : public ::testing::TestWithParam<Target> {};

TEST_P(Replay, EachSeedAndKeptFindingRunsThrough)
{
    const Target target = GetParam();
    const QString name = QString::fromLatin1(target.name);
    const QStringList seeds = inputsOf(QStringLiteral("corpus/") + name);
    EXPECT_GE(seeds.size(), 3) << "a target keeps a handful of seeds";
    for (const QString& file : seeds + inputsOf(QStringLiteral("regressions/") + name)) {
        SCOPED_TRACE(file.toStdString());
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        const QByteArray bytes = f.readAll();
        EXPECT_EQ(target.entry(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size())), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, Replay, ::testing::ValuesIn(kTargets),
                         [](const ::testing::TestParamInfo<Target>& info) {
                             return std::string(info.param.name);
                         });

}  // namespace
}  // namespace td::fuzz
