// Limits the values of a world by the description of the world file that its reader and writer use.
#include "tools/capture/fit.h"

#include "simulator/file/world_keys.h"
#include "snapshot/text.h"

namespace {

class Fitter {
public:
    explicit Fitter(Place where) : place(std::move(where)) {}

    template <typename Number>
    void number(const char* key, Number& value, std::int64_t low, std::int64_t high) {
        const bool above = value > 0 && static_cast<std::uint64_t>(value) > static_cast<std::uint64_t>(high);
        const bool under = !above && static_cast<std::int64_t>(value) < low;
        if (!above && !under)
            return;
        noteMissing(below(place, key), std::to_string(value) + " is outside the limits of a world");
        value = static_cast<Number>(above ? high : low);
    }
    void count(const char*, std::uint32_t&, std::int64_t) {}
    void flag(const char*, bool&) {}
    void mark(const char*, bool&) {}
    void text(const char* key, std::string& value, std::size_t maxLength) {
        std::string plain;
        for (std::string_view rest = value; !rest.empty();) {
            const std::size_t length = characterLength(rest);
            const bool usable = length > 0 && rest[0] != '\0';
            plain += usable ? std::string(rest.substr(0, length)) : "?";
            rest.remove_prefix(std::max<std::size_t>(1, length));
        }
        plain.resize(std::min(plain.size(), maxLength));
        while (!isUtf8(plain))
            plain.pop_back();
        if (plain != value)
            noteMissing(below(place, key), "bytes that do not fit are replaced or left out");
        value = plain;
    }
    void notes(const char*, std::vector<std::string>&, std::size_t, std::size_t) {}
    template <typename Code>
    void word(const char*, Code&, std::span<const q5sim::Word>) {}
    template <typename Record>
    void object(const char* key, Record& record) {
        Fitter inner(below(place, key));
        describe(inner, record);
    }
    template <typename Record>
    void optional(const char* key, bool& present, Record& record) {
        if (present)
            object(key, record);
    }
    template <typename Record>
    void list(const char* key, std::vector<Record>& records, std::size_t maxCount) {
        if (records.size() > maxCount)
            noteMissing(below(place, key), "only the first " + std::to_string(maxCount) + " are kept");
        records.resize(std::min(records.size(), maxCount));
        for (std::size_t i = 0; i < records.size(); i++) {
            Fitter inner(below(place, key, i));
            describe(inner, records[i]);
        }
    }
    template <typename Number>
    void numbers(const char*, std::vector<Number>&, std::int64_t, std::size_t) {}
    void version(const char* key, q5sim::Version& version) {
        for (std::int32_t& part : version.part)
            number(key, part, 0, 99999);
    }

private:
    Place place;
};

[[maybe_unused]] void require(Fitter&, const char*) {}
[[maybe_unused]] void describeMediaErrors(Fitter&, q5sim::Drive&) {}

} // namespace

void fitWorld(q5sim::World* world, Notes* notes) {
    Fitter io({notes, ""});
    describe(io, *world);
}
