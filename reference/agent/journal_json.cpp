#include "reference/agent/journal_json.h"

#include <charconv>
#include <cmath>

namespace pcg {
namespace refagent {

std::string JournalDouble(double value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-Infinity" : "Infinity";
    }
    char digits[64];
    const auto result = std::to_chars(digits, digits + sizeof(digits), value, std::chars_format::general, 17);
    std::string text(digits, result.ptr);
    if (text.find_first_of(".e") == std::string::npos) {
        text += ".0";
    }
    return text;
}

namespace {

void AppendString(std::string& out, const std::string& text) {
    // Replacing invalid UTF-8 keeps a journal readable whatever a caller named its agent.
    out += Json(text).dump(-1, ' ', false, nlohmann::detail::error_handler_t::replace);
}

}  // namespace

void AppendJson(std::string& out, const Json& value) {
    switch (value.type()) {
    case Json::value_t::object: {
        out += '{';
        bool first = true;
        for (auto it = value.begin(); it != value.end(); ++it) {
            if (!first) {
                out += ',';
            }
            first = false;
            AppendString(out, it.key());
            out += ':';
            AppendJson(out, it.value());
        }
        out += '}';
        break;
    }
    case Json::value_t::array: {
        out += '[';
        bool first = true;
        for (const Json& element : value) {
            if (!first) {
                out += ',';
            }
            first = false;
            AppendJson(out, element);
        }
        out += ']';
        break;
    }
    case Json::value_t::string:
        AppendString(out, value.get_ref<const std::string&>());
        break;
    case Json::value_t::number_float:
        out += JournalDouble(value.get<double>());
        break;
    default:
        out += value.dump();
        break;
    }
}

}  // namespace refagent
}  // namespace pcg
