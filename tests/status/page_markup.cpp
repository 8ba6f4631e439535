// Parses the markup of a page, tag by tag.
#include "tests/status/page_markup.h"

#include <cctype>
#include <cstdlib>
#include <map>

#include "snapshot/text.h"

// What a page may consist of. Nothing here runs or loads anything.
static const std::map<std::string, std::set<std::string>> kAllowed = {
    {"html", {"lang"}},
    {"head", {}},
    {"meta", {"charset", "http-equiv", "content", "name"}},
    {"title", {}},
    {"style", {}},
    {"body", {}},
    {"header", {}},
    {"nav", {"aria-label"}},
    {"main", {}},
    {"section", {"id", "aria-labelledby"}},
    {"article", {"class", "id"}},
    {"div", {"class"}},
    {"h1", {}},
    {"h2", {"id"}},
    {"h3", {}},
    {"h4", {}},
    {"p", {"class"}},
    {"time", {"datetime"}},
    {"ul", {"class", "aria-label"}},
    {"li", {"class"}},
    {"a", {"href"}},
    {"span", {"class", "aria-hidden"}},
    {"bdi", {}},
    {"dl", {}},
    {"dt", {}},
    {"dd", {}},
    {"table", {"class"}},
    {"caption", {}},
    {"thead", {}},
    {"tbody", {}},
    {"tr", {}},
    {"th", {"scope"}},
    {"td", {}},
    {"label", {"for"}},
    {"progress", {"id", "max", "value"}},
    {"svg", {"class", "role", "aria-label", "width", "height"}},
    {"g", {"class"}},
    {"rect", {"x", "width", "height"}},
    {"text", {"x", "y"}},
};

struct Reader {
    std::string_view left;
    std::vector<std::string> open;
    Markup* markup;

    void fail(const std::string& problem) const {
        if (markup->problem.empty())
            markup->problem = problem + " before \"" + std::string(left.substr(0, 60)) + "\"";
    }
    bool take(std::string_view text) {
        if (!left.starts_with(text))
            return false;
        left.remove_prefix(text.size());
        return true;
    }
    std::string until(std::string_view ends) {
        const std::string found(left.substr(0, left.find_first_of(ends)));
        left.remove_prefix(found.size());
        return found;
    }
};

static void checkText(const Reader& reader, std::string_view text) {
    for (std::size_t at = 0; (at = text.find('&', at)) != std::string_view::npos; ++at) {
        bool known = false;
        for (const std::string_view reference : {"&amp;", "&lt;", "&gt;", "&quot;", "&#39;"})
            known = known || text.substr(at).starts_with(reference);
        if (!known)
            reader.fail("a bare ampersand");
    }
    if (text.find('>') != std::string_view::npos)
        reader.fail("a bare >");
}

static void readAttribute(Reader* reader, const std::string& tag, std::string* shape) {
    const std::string name = reader->until("=> ");
    if (!reader->take("=\""))
        return reader->fail("an attribute without a quoted value");
    const std::string value = reader->until("\"<");
    if (!reader->take("\""))
        return reader->fail("an attribute that does not end");
    checkText(*reader, value);
    if (!kAllowed.at(tag).contains(name))
        return reader->fail("unexpected attribute " + name + " of " + tag);
    *shape += " " + name;
    if (name == "id")
        reader->markup->ids.push_back(value);
    if (name == "for" || name == "aria-labelledby")
        reader->markup->references.push_back(value);
    if (name == "href" && value[0] == '#')
        reader->markup->references.push_back(value.substr(1));
    if (name == "href" && value[0] != '#')
        reader->fail("a link to elsewhere");
    if (tag == "svg" && name == "role")
        reader->markup->strips.push_back(0);
    if (tag == "rect" && name == "width")
        reader->markup->strips.back() += std::strtod(value.c_str(), nullptr);
}

static void closeTag(Reader* reader) {
    const std::string name = reader->until(">");
    reader->take(">");
    if (reader->open.empty() || reader->open.back() != name)
        return reader->fail("</" + name + "> closes nothing");
    reader->open.pop_back();
    reader->markup->skeleton.push_back("/" + name);
}

static void openTag(Reader* reader) {
    const std::string name = reader->until(" />");
    if (!kAllowed.contains(name))
        return reader->fail("unexpected tag " + name);
    std::string shape = name;
    while (reader->markup->problem.empty() && reader->take(" "))
        readAttribute(reader, name, &shape);
    const bool empty = reader->take("/") || name == "meta";
    if (!reader->take(">"))
        reader->fail("a tag that does not end");
    reader->markup->skeleton.push_back(shape);
    if (!empty)
        reader->open.push_back(name);
    if (name == "style")
        reader->left.remove_prefix(std::min(reader->left.find("</style>"), reader->left.size()));
}

static void checkBytes(const Reader& reader, const std::string& page) {
    if (!isUtf8(page))
        reader.fail("not UTF-8");
    for (const char character : page)
        if ((static_cast<unsigned char>(character) < 0x20 && character != '\n') || character == 0x7F)
            reader.fail("a control character");
}

static void checkReferences(const Reader& reader) {
    const std::set<std::string> ids(reader.markup->ids.begin(), reader.markup->ids.end());
    if (ids.size() != reader.markup->ids.size())
        reader.fail("an ID that is used twice");
    for (const std::string& reference : reader.markup->references)
        if (!ids.contains(reference))
            reader.fail("a reference to " + reference + ", which is nowhere");
}

Markup readMarkup(const std::string& page) {
    Markup markup;
    Reader reader = {page, {}, &markup};
    checkBytes(reader, page);
    if (!reader.take("<!DOCTYPE html>\n"))
        reader.fail("no document type");
    while (markup.problem.empty() && !reader.left.empty()) {
        checkText(reader, reader.until("<"));
        if (reader.take("</"))
            closeTag(&reader);
        else if (reader.take("<"))
            openTag(&reader);
    }
    if (!reader.open.empty())
        reader.fail(reader.open.back() + " is not closed");
    checkReferences(reader);
    return markup;
}
