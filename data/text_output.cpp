// The rare step of writing a text: its place is too small.
#include "data/text_output.h"

namespace pelm::data {

void TextOutput::grow(std::size_t needed) { place_.resize(2 * (size_ + needed)); }

}  // namespace pelm::data
