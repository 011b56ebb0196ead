// How the tables of fields are written: NUM(record, member), TXT, HEX ... make one Field each.
#pragma once

#include "lab/labFields.h"

#include <type_traits>
#include <utility>

namespace sim {

template <class Member>
constexpr Field makeField(const char* name, size_t offset, FieldType type) {
    if (type == FieldType::Number || type == FieldType::Signed) {
        using Element = std::remove_all_extents_t<Member>;
        constexpr size_t whole = sizeof(Member);
        return Field{name, offset, sizeof(Element), whole / sizeof(Element), type};
    }
    if constexpr (std::rank_v<Member> == 2) {
        return Field{name, offset, std::extent_v<Member, 1>, std::extent_v<Member, 0>, type};
    } else {
        return Field{name, offset, sizeof(Member), 1, type};
    }
}

// Members are names, not expressions. NOLINTBEGIN(bugprone-macro-parentheses)
#define FIELD(record, member, type)                                                                                    \
    makeField<std::remove_reference_t<decltype((std::declval<record&>().member))>>(#member, offsetof(record, member),  \
                                                                                   FieldType::type)
#define NUM(record, member) FIELD(record, member, Number)
#define SGN(record, member) FIELD(record, member, Signed)
#define TXT(record, member) FIELD(record, member, Text)
#define HEX(record, member) FIELD(record, member, Hex)
#define ACTIVITY(record, member)                                                                                       \
    NUM(record, member.kind), NUM(record, member.state), NUM(record, member.disk), NUM(record, member.work),           \
        NUM(record, member.done), NUM(record, member.since), NUM(record, member.speed), NUM(record, member.announced)
#define ENDPOINT(record, member)                                                                                       \
    NUM(record, member.DevID), NUM(record, member.DevType), NUM(record, member.PhyCnt), NUM(record, member.PhyID),     \
        HEX(record, member.SAS_Address), NUM(record, member.EnclosureID)
#define LINK(record, member) ENDPOINT(record, member.Parent), ENDPOINT(record, member.Self)
#define VERSION(record, member)                                                                                        \
    NUM(record, member.MajorVersion), NUM(record, member.MinorVersion), NUM(record, member.RevisionNumber),            \
        NUM(record, member.BuildNumber)

// NOLINTEND(bugprone-macro-parentheses)

#define TABLE(kind, section, record, fields)                                                                           \
    { static_cast<Kind>(kind), section, sizeof(record), fields, std::size(fields) }

} // namespace sim
