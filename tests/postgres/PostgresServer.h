#pragma once
#include "support/LocalPostgres.h"
#include <QString>
#include <gtest/gtest.h>

namespace td::test {

// The PostgreSQL server of one test program: started before the first test, stopped after the last.
class PostgresServer : public ::testing::Environment {
public:
    static PostgresServer& instance();

    void SetUp() override;     // skips every test when no server programs are installed
    void TearDown() override;  // stops the server and removes its folder

    // The address of a new, empty database on the server (not yet holding a songbook).
    QString newDatabase();
    QString address(const QString& database) const { return server_.address(database); }
    int port() const { return server_.port(); }
    bool running() const { return server_.running(); }

private:
    LocalPostgres server_;
    int databases_ = 0;
};

}  // namespace td::test
