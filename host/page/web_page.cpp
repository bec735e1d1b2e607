#include "host/page/web_page.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>
#include <vector>

#include "host/page/web_files.h"
#include "host/text/markup.h"

namespace host {
namespace {

std::string Base64(const std::vector<unsigned>& bytes) {
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        unsigned three = 0;
        for (std::size_t k = 0; k < 3; ++k) three = three << 8 | (k < count ? bytes[i + k] : 0);
        for (std::size_t k = 0; k < 4; ++k) text += k <= count ? kDigits[three >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

// "'sha256-...'" of a hash in hexadecimal.
std::string HashSource(std::string_view hexadecimal) {
    std::vector<unsigned> bytes(hexadecimal.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        std::from_chars(hexadecimal.data() + 2 * i, hexadecimal.data() + 2 * i + 2, bytes[i], 16);
    return "'sha256-" + Base64(bytes) + "'";
}

void ReplaceAll(std::string& text, std::string_view what, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
}

// As JSON between script tags: no character in it can end the element or begin a comment, and none ends a line
// for a reader that takes it as a script.
std::string JsonInScript(const Json& json) {
    std::string text = JsonText(json);
    ReplaceAll(text, "<", "\\u003c");
    ReplaceAll(text, ">", "\\u003e");
    ReplaceAll(text, "&", "\\u0026");
    ReplaceAll(text, "\u2028", "\\u2028");
    ReplaceAll(text, "\u2029", "\\u2029");
    return text;
}

// "https://host:port" of a URL, with every name below it where the URL has {s}.
std::string OriginOf(const std::string& url) {
    std::string origin = url.substr(0, url.find('/', url.find("://") + 3));
    ReplaceAll(origin, "{s}", "*");
    return origin;
}

// The template's parts and what goes between them: nothing that is filled in is searched again.
std::string Filled(std::string_view page, const std::vector<std::pair<std::string_view, std::string>>& values) {
    std::string text;
    for (const auto& [name, value] : values) {
        const std::size_t at = page.find(name);
        text.append(page.substr(0, at)).append(value);
        page.remove_prefix(at + name.size());
    }
    return text.append(page);
}

}  // namespace

std::string CheckTilesUrl(const std::string& url) {
    const bool hasScheme = url.starts_with("https://") || url.starts_with("http://");
    const bool hasPlaces = url.find("{z}") != std::string::npos && url.find("{x}") != std::string::npos &&
                           url.find("{y}") != std::string::npos;
    if (!hasScheme || !hasPlaces) return url + " is no URL like https://host/{z}/{x}/{y}.png";
    const std::string host = OriginOf(url).substr(url.find("://") + 3);
    const std::string_view afterStar = std::string_view(host).substr(host.starts_with("*.") ? 2 : 0);
    constexpr std::string_view kHostCharacters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-.:[]";
    if (afterStar.empty() || afterStar.find_first_not_of(kHostCharacters) != std::string_view::npos)
        return url + " names no host";
    return "";
}

std::string PagePolicy(const PageOptions& options) {
    std::string policy = "default-src 'none'; script-src " + HashSource(kWebScriptHash) + "; style-src " +
                         HashSource(kWebStyleHash) + "; img-src data:";
    if (options.tiles) policy += ' ' + OriginOf(options.tiles->url);
    if (options.live) policy += "; connect-src 'self'";
    return policy + "; base-uri 'none'; form-action 'none'";
}

std::string WebPage(const PageOptions& options, const Json& tracks) {
    Json data = {{"title", options.title}, {"live", options.live}, {"tiles", nullptr}, {"tracks", tracks}};
    if (options.tiles)
        data["tiles"] = {{"url", options.tiles->url}, {"attribution", options.tiles->attribution}};
    return Filled(kWebPage, {{"@POLICY@", MarkupText(PagePolicy(options))},
                             {"@TITLE@", MarkupText(options.title)},
                             {"@STYLE@", std::string(kWebStyle)},
                             {"@DATA@", JsonInScript(data)},
                             {"@SCRIPT@", std::string(kWebScript)}});
}

}  // namespace host
