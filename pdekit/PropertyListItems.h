// SPDX-License-Identifier: MIT
// A libplist dictionary's items in order, for code inside the project (the
// SDK's headers keep libplist out of sight, so this one is not installed).
#pragma once

#include <cstdlib>
#include <memory>
#include <plist/plist.h>

namespace pde {

// Calls `visit(key, value)` for each item of `dictionary` (a PLIST_DICT
// node); the key is freed after the call. Does nothing for an empty one.
template <typename Visit>
void forEachDictionaryItem(plist_t dictionary, Visit visit)
{
    plist_dict_iter iter = nullptr;
    plist_dict_new_iter(dictionary, &iter);
    const std::unique_ptr<void, decltype(&std::free)> ownedIter(iter, &std::free);
    for (;;) {
        char *key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(dictionary, iter, &key, &value);
        const std::unique_ptr<char, decltype(&std::free)> ownedKey(key, &std::free);
        if (key == nullptr || value == nullptr)
            return;
        visit(key, value);
    }
}

} // namespace pde
