#pragma once

#include <initializer_list>

namespace ktl {

class TextBox;

// How fields for numbers stand and which keys they take.
void TakeAmounts(std::initializer_list<TextBox*> boxes);  // digits and a point
void TakeCounts(std::initializer_list<TextBox*> boxes);   // digits alone

}  // namespace ktl
