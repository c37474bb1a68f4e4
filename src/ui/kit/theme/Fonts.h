// Fonts.h: the two font families that the program brings along.
#pragma once

namespace velmora {

/// Makes "Albert Sans" (400, 600, 700) and "Bricolage Grotesque" (800) known to the program; a
/// second call does nothing. Threads: main, after the application object was made.
void loadFonts();

} // namespace velmora
