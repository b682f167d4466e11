#pragma once
// libcdio writes its warnings (an image file it cannot stat, a drive that refuses a
// command) to the terminal; the program reports failures itself, so they are kept quiet.

namespace cantovel {

// Routes libcdio's messages below errors to nowhere; safe to call any number of times.
void quietCdio();

}  // namespace cantovel
