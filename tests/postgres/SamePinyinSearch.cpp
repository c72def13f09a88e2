// The same test bodies as on SQLite, here on the PostgreSQL server.
#include "../pinyin/PinyinSearchTest.cpp"
