// JSON text of the journal. nlohmann's own output writes non-finite doubles
// as null and shortens doubles; the journal wants bare NaN / Infinity /
// -Infinity and 17 significant digits, so numbers are written here and
// everything else through the library.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace pcg {
namespace refagent {

using Json = nlohmann::ordered_json;

// Appends `value` as JSON text. Integers are exact (64-bit included);
// doubles have 17 significant digits and keep a fraction or exponent so they
// read back as doubles ("2.0", not "2").
void AppendJson(std::string& out, const Json& value);

// A double as the journal writes it.
std::string JournalDouble(double value);

}  // namespace refagent
}  // namespace pcg
