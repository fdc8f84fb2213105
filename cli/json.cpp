#include "cli/json.h"

#include "cli/text.h"

namespace NCli {

std::string JsonOf(const JsonValue& value) {
    return EscapeUnseen(value.dump(-1, ' ', false, JsonValue::error_handler_t::replace));
}

}  // namespace NCli
