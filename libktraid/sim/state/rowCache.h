// What a transaction has read of the state, so that it asks for no record twice: rules look at the same few disks and
// virtual disks over and over.
#pragma once

#include "state/kinds.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace sim {

struct RowKey {
    KT_U8 adapter;
    Kind kind;
    KT_U64 id;
    bool operator==(const RowKey&) const = default;
};

struct RowKeyHash {
    size_t operator()(const RowKey& key) const {
        return std::hash<KT_U64>{}(key.id << 16 ^ KT_U64{key.kind} << 8 ^ key.adapter);
    }
};

// The bytes of rows by their keys; nothing for a row that is known to be missing. It holds a thousand rows at most.
class RowCache {
  public:
    // Nothing when the row was not read yet.
    const std::optional<std::string>* known(const RowKey& key) const {
        const auto row = rows.find(key);
        return row == rows.end() ? nullptr : &row->second;
    }
    const std::optional<std::string>& keep(const RowKey& key, std::optional<std::string> bytes) {
        if (rows.size() >= MOST) rows.clear();
        return rows[key] = std::move(bytes);
    }
    void forget(const RowKey& key) { rows.erase(key); }
    void forget() { rows.clear(); }

  private:
    static constexpr size_t MOST = 1000;
    std::unordered_map<RowKey, std::optional<std::string>, RowKeyHash> rows;
};

} // namespace sim
