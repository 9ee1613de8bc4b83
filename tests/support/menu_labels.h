#pragma once
// The labels of a menu's entries in order, markup kept: what tests compare menus by.

#include <string>
#include <vector>

#include "ui/popup_menu.h"

namespace veldra::testing {

inline std::vector<std::string> labels_of(const MenuDefinition& menu) {
    std::vector<std::string> labels;
    for (const MenuEntry& entry : menu.entries)
        labels.push_back(entry.label);
    return labels;
}

}  // namespace veldra::testing
