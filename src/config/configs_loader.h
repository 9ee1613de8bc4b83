#pragma once
// Reading configuration files: the internals of reload_game_configurations, public for tests.

#include <optional>
#include <string>

#include "config/game_configurations.h"

namespace veldra {

class Files;

// Reads, cleans, parses, checks and compiles one file. With require_all every schema key must
// be there (the base file); without, absent keys are skipped (a custom file). Failures are
// logged with their texts and give nullopt.
// The formulas read their variables from `globals`.
std::optional<GameConfigurations> _load_game_configurations_from_file(Files& files,
                                                                      const std::string& path,
                                                                      bool require_all,
                                                                      ExpressionGlobals& globals);

}  // namespace veldra
