// The song database tests of this program run on a PostgreSQL server of its own: each test's
// SongFile is a new database there.
#include "../songdb/SongFile.h"
#include "PostgresServer.h"

namespace {

const bool registered = [] {
    ::testing::AddGlobalTestEnvironment(&td::test::PostgresServer::instance());
    td::test::SetSongLocationMaker([](const QString&) { return td::test::PostgresServer::instance().newDatabase(); });
    return true;
}();

}  // namespace
