// Where the pinyin tests make their songbooks: a file here, a server in the server's test program.
#include "../songdb/SongFile.cpp"
