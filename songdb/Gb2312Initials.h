#pragma once

namespace td {

// Where the first-level GB2312 hanzi of each pinyin initial begin and end, in GB2312 order, as the
// initial-letter search has always written them: U ends below where it starts (only a real letter U
// matches), W begins at the 挖 that ends T, and Z runs from 匝 to the end of the level.
struct Gb2312InitialRange {
    char letter;
    const char* lower;
    const char* upper;
};

inline constexpr Gb2312InitialRange kGb2312InitialRanges[] = {
    {'A', "啊", "八"}, {'B', "八", "擦"}, {'C', "擦", "搭"}, {'D', "搭", "蛾"}, {'E', "蛾", "发"},
    {'F', "发", "噶"}, {'G', "噶", "哈"}, {'H', "哈", "击"}, {'J', "击", "喀"}, {'K', "喀", "垃"},
    {'L', "垃", "妈"}, {'M', "妈", "拿"}, {'N', "拿", "哦"}, {'O', "哦", "啪"}, {'P', "啪", "期"},
    {'Q', "期", "然"}, {'R', "然", "撒"}, {'S', "撒", "塌"}, {'T', "塌", "挖"}, {'U', "挖", "撒"},
    {'W', "挖", "昔"}, {'X', "昔", "压"}, {'Y', "压", "匝"},
};
inline constexpr const char* kGb2312InitialZ = "匝";

}  // namespace td
