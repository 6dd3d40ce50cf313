#include "Workbench/console/PageScripts.hpp"

#include <nlohmann/json.hpp>

namespace workbench {

namespace {

std::string Fill(const std::string& selector, const std::string& value, const std::string& event) {
    const auto quoted = [](const std::string& text) { return nlohmann::json(text).dump(); };
    return "(() => { const field = document.querySelector(" + quoted(selector) +
           "); field.value = " + quoted(value) + "; field.dispatchEvent(new Event(" + quoted(event) +
           ", {bubbles: true})); })();";
}

}  // namespace

std::string Type(const std::string& selector, const std::string& text) {
    return Fill(selector, text, "input");
}

std::string Choose(const std::string& selector, const std::string& option) {
    return Fill(selector, option, "change");
}

}  // namespace workbench
