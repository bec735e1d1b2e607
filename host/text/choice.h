// An option whose value is one of a few words. The words only: the library's transformers would take the
// numbers behind them as well.
#pragma once

#include <map>
#include <string>

#include <CLI/App.hpp>

namespace host {

// `words` must outlive the parsing. `shown`: for the help, "a|b|c".
template <typename Value>
CLI::Option* AddChoice(CLI::App& app, const std::string& name, Value& value,
                       const std::map<std::string, Value>& words, const std::string& shown,
                       const std::string& help) {
    std::string standing;
    for (const auto& [word, meaning] : words)
        if (meaning == value) standing = word;
    const auto take = [&value, &words](const std::string& word) { value = words.at(word); };
    return app.add_option_function<std::string>(name, take, help)
        ->check(CLI::IsMember(&words).description(""))
        ->type_name(shown)
        ->default_str(standing);
}

}  // namespace host
