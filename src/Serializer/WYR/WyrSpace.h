// White space in Wyr's texts. No state: any thread.
#pragma once

namespace Ubrix {

// As the standard's isspace has it in the "C" locale: what a text means mustn't depend on the game's locale.
constexpr bool IsWyrSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace Ubrix
