#pragma once
// Humans tests: the creature fixture plus ways to rewrite behaviour formulas and to place
// humans with evaluated traits.

#include <initializer_list>
#include <string_view>
#include <variant>

#include "config/game_configurations.h"
#include "creature_test_fixture.h"
#include "creatures/human.h"
#include "creatures/human_ai.h"
#include "expression/expression.h"

namespace veldra::testing {

using GC = GameConfigurations;

class HumanTest : public CreatureTest {
protected:
    // Replaces one formula of the loaded configuration; the key keeps its kind.
    void set_formula(ConfigMethod GC::*key, std::string_view source) {
        auto compiled = ExpressionCompiler().compile_expression_from_string(source);
        ASSERT_TRUE(std::holds_alternative<CompiledExpression>(compiled)) << source;
        ConfigMethod& method = mutable_configs().*key;
        method = ConfigMethod(std::get<CompiledExpression>(std::move(compiled)), method.kind(),
                              &configs.expression_globals);
    }

    // Every action type weighs 0 except those listed, which weigh 1.
    void only_weights(std::initializer_list<ConfigMethod GC::*> kept) {
        for (ConfigMethod GC::*key :
             {&GC::weight_approach_food, &GC::weight_approach_monster, &GC::weight_approach_human,
              &GC::weight_avoid_monster, &GC::weight_avoid_human, &GC::weight_attack_monster,
              &GC::weight_attack_human, &GC::weight_exchange_with_human, &GC::weight_explore}) {
            bool is_kept = false;
            for (ConfigMethod GC::*k : kept)
                is_kept = is_kept || k == key;
            set_formula(key, is_kept ? "1" : "0");
        }
    }

    // A ticked AI human at the centre of cell (cx, cy) with all-zero traits evaluated.
    obj_human_ai& human_at(int cx, int cy) {
        auto& human = create<obj_human_ai>(centre(cx), centre(cy));
        human.set_traits(PersonalityTraits{});
        return human;
    }
};

}  // namespace veldra::testing
