// The same test bodies as on SQLite, here on the PostgreSQL server.
#include "../songdb/DeleteJournalTest.cpp"
