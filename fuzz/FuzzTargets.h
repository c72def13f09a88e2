#pragma once
// The fuzz targets: one entry function each, fed one input at a time by libFuzzer in a fuzzing build
// and by the replay test in every build. Answers 0, as libFuzzer wants; a fault aborts.
#include <cstddef>
#include <cstdint>

namespace td::fuzz {

using Entry = int (*)(const uint8_t* data, size_t size);

int FuzzIniFile(const uint8_t* data, size_t size);
int FuzzTextStore(const uint8_t* data, size_t size);
int FuzzFormatFile(const uint8_t* data, size_t size);
int FuzzJetSql(const uint8_t* data, size_t size);
int FuzzSonImport(const uint8_t* data, size_t size);
int FuzzAccessImport(const uint8_t* data, size_t size);
int FuzzSingerInfo(const uint8_t* data, size_t size);
int FuzzCommandSpe(const uint8_t* data, size_t size);
int FuzzKtvPublicIni(const uint8_t* data, size_t size);
int FuzzRegionText(const uint8_t* data, size_t size);

// A target's name is the name of its corpus folder and, behind "fuzz_", of its program.
struct Target {
    const char* name;
    Entry entry;
};
inline constexpr Target kTargets[] = {
    {"ini_file", FuzzIniFile},         {"text_store", FuzzTextStore},
    {"format_file", FuzzFormatFile},   {"jet_sql", FuzzJetSql},
    {"son_import", FuzzSonImport},     {"access_import", FuzzAccessImport},
    {"singer_info", FuzzSingerInfo},   {"command_spe", FuzzCommandSpe},
    {"ktvpublic_ini", FuzzKtvPublicIni}, {"region_text", FuzzRegionText},
};

}  // namespace td::fuzz
