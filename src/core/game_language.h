// The game's site language, one type for the readers, the simulator and the
// engine. Its value is the row of the game's title table, the number that
// scenarios, messages and the rating history's site names use.
#pragma once

namespace core {

enum class GameLanguage : int {
    English = 1,
    Japanese = 2,
    German = 3,
    French = 4,  // no titles or labels known
    Italian = 5,
    Spanish = 6,
    Mexican = 7,
    Espanol = 8,  // differs from Spanish only in letter case
    Argentine = 9,
    Brazilian = 10,  // no titles or labels known
};

inline constexpr int LanguageRow(GameLanguage l) { return static_cast<int>(l); }
inline constexpr bool IsLanguageRow(int row) { return row >= 1 && row <= 10; }
// Rows outside the table read as English, the site the game opens on.
inline constexpr GameLanguage LanguageOfRow(int row) {
    return IsLanguageRow(row) ? static_cast<GameLanguage>(row) : GameLanguage::English;
}

}  // namespace core
