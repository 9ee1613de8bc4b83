#pragma once
// The schema of configurations.json: every key, the type its value must have and what it
// controls, in file order. The loader, the typed Configs record and the documentation all come
// from this one table, so adding a key is one line here (and one in the shipped file).
//
// Types: NUMBER (double), BOOL, STRING, ARRAY (a dynamic Value), METHOD (an expression string
// compiled into a ConfigMethod). Rules: the values a key accepts beyond its type, checked at
// load (config_value_rules.h; ANY for none).

#define VELDRA_GAME_CONFIGURATION_KEYS(X)                                                          \
    X(configuration_version, STRING, ANY, "free version label of the file")                        \
    X(options_openness, ARRAY, TRAIT_OPTIONS,                                                      \
      "the values offered for openness in the traits menu")                                        \
    X(options_conscientiousness, ARRAY, TRAIT_OPTIONS, "same for conscientiousness")               \
    X(options_extraversion, ARRAY, TRAIT_OPTIONS, "same for extraversion")                         \
    X(options_agreeableness, ARRAY, TRAIT_OPTIONS, "same for agreeableness")                       \
    X(options_neuroticism, ARRAY, TRAIT_OPTIONS, "same for neuroticism")                           \
    X(trial_time, NUMBER, TRIAL_TIME, "length of a trial")                                         \
    X(trial_score, METHOD, ANY, "score formula of a trial")                                        \
    X(game_speed, NUMBER, GAME_SPEED, "simulation speed factor")                                   \
    X(show_trial_result_menu, BOOL, ANY, "show the result menu after a trial")                     \
    X(leave_traits_menu_open_when_playing, BOOL, ANY,                                              \
      "keep the personality-traits menu open during play")                                         \
    X(human_sight_range, METHOD, ANY, "sight range of a human")                                    \
    X(human_energy_max, NUMBER, POSITIVE, "energy cap of a human")                                 \
    X(human_starting_energy, NUMBER, NON_NEGATIVE, "energy of a human at spawn")                   \
    X(monster_energy_max, NUMBER, POSITIVE, "energy cap of a monster")                             \
    X(monster_starting_energy, NUMBER, NON_NEGATIVE, "energy of a monster at spawn")               \
    X(human_energy_gain_eat_food, NUMBER, FINITE, "energy gained by eating food")                  \
    X(human_energy_gain_kill_monster, NUMBER, FINITE, "energy gained by killing a monster")        \
    X(human_energy_gain_kill_human, NUMBER, FINITE, "energy gained by killing a human")            \
    X(human_constant_energy_loss_amount, NUMBER, FINITE, "energy lost at each constant-loss tick") \
    X(human_constant_energy_loss_frequency, NUMBER, FREQUENCY,                                     \
      "interval of the constant energy loss")                                                      \
    X(attack_frequency, NUMBER, FREQUENCY, "interval between attacks")                             \
    X(exchange_frequency, NUMBER, FREQUENCY, "interval between exchanges")                         \
    X(action_update_frequency, NUMBER, FREQUENCY,                                                  \
      "interval between action re-decisions of AI humans")                                         \
    X(move_speed_approach_food, METHOD, ANY, "move speed while approaching food")                  \
    X(move_speed_approach_monster, METHOD, ANY, "move speed while approaching a monster")          \
    X(move_speed_approach_human, METHOD, ANY, "move speed while approaching a human")              \
    X(move_speed_avoid_monster, METHOD, ANY, "move speed while avoiding a monster")                \
    X(move_speed_avoid_human, METHOD, ANY, "move speed while avoiding a human")                    \
    X(move_speed_attack_monster, METHOD, ANY, "move speed while attacking a monster")              \
    X(move_speed_attack_human, METHOD, ANY, "move speed while attacking a human")                  \
    X(move_speed_exchange_with_human, METHOD, ANY, "move speed while going to exchange")           \
    X(move_speed_explore, METHOD, ANY, "move speed while exploring")                               \
    X(human_sand_move_speed_multiplier, NUMBER, NON_NEGATIVE, "speed factor of a human on sand")   \
    X(monster_sand_move_speed_multiplier, NUMBER, NON_NEGATIVE,                                    \
      "speed factor of a monster on sand")                                                         \
    X(monster_movement_speed, NUMBER, NON_NEGATIVE, "monster speed when chasing")                  \
    X(monster_exploration_movement_speed, NUMBER, NON_NEGATIVE, "monster speed when roaming")      \
    X(monster_sight_range, NUMBER, NON_NEGATIVE, "monster sight range")                            \
    X(monster_exploration_range, NUMBER, NON_NEGATIVE, "monster roaming range")                    \
    X(human_fight_hit_weight, METHOD, ANY, "weight of \"hit\" in a human's fight outcome draw")    \
    X(human_fight_miss_weight, METHOD, ANY, "weight of \"miss\"")                                  \
    X(human_fight_flee_weight, METHOD, ANY, "weight of \"flee\"")                                  \
    X(monster_fight_hit_weight, NUMBER, FINITE,                                                    \
      "weight of \"hit\" in a monster's fight outcome draw")                                       \
    X(monster_fight_miss_weight, NUMBER, FINITE, "weight of \"miss\"")                             \
    X(monster_fight_flee_weight, NUMBER, FINITE, "weight of \"flee\"")                             \
    X(human_first_attack_damage, METHOD, ANY, "damage of a human's first attack")                  \
    X(human_normal_attack_damage, METHOD, ANY, "damage of a human's later attacks")                \
    X(human_attacker_energy_gain, METHOD, ANY, "energy a human attacker gains per hit")            \
    X(monster_first_attack_damage, NUMBER, FINITE, "damage of a monster's first attack")           \
    X(monster_normal_attack_damage, NUMBER, FINITE, "damage of a monster's later attacks")         \
    X(monster_attacker_energy_gain, NUMBER, FINITE, "energy a monster gains per hit")              \
    X(num_memory_slots, NUMBER, MEMORY_SLOTS, "how many memories a human keeps")                   \
    X(exchange_give_weight, METHOD, ANY, "weight of choosing to give in an exchange")              \
    X(exchange_take_weight, METHOD, ANY, "weight of choosing to take in an exchange")              \
    X(exchange_collaboration_energy_gain, NUMBER, FINITE, "energy each side gains when both give") \
    X(exchange_being_ripped_off_energy_gain, NUMBER, FINITE,                                       \
      "energy of the side that gave while the other took")                                         \
    X(exchange_ripping_off_energy_gain, NUMBER, FINITE,                                            \
      "energy of the side that took while the other gave")                                         \
    X(exchange_back_chance, METHOD, ANY, "chance of exchanging back")                              \
    X(human_exploration_range, METHOD, ANY, "exploration range of a human")                        \
    X(weight_approach_food, METHOD, ANY, "action-type weight of ApproachFood")                     \
    X(weight_approach_monster, METHOD, ANY, "action-type weight of ApproachMonster")               \
    X(weight_approach_human, METHOD, ANY, "action-type weight of ApproachHuman")                   \
    X(weight_avoid_monster, METHOD, ANY, "action-type weight of AvoidMonster")                     \
    X(weight_avoid_human, METHOD, ANY, "action-type weight of AvoidHuman")                         \
    X(weight_attack_monster, METHOD, ANY, "action-type weight of AttackMonster")                   \
    X(weight_attack_human, METHOD, ANY, "action-type weight of AttackHuman")                       \
    X(weight_exchange_with_human, METHOD, ANY, "action-type weight of ExchangeWithHuman")          \
    X(weight_explore, METHOD, ANY, "action-type weight of Explore")                                \
    X(target_weight_approach_food, METHOD, ANY, "weight of one candidate target for ApproachFood") \
    X(target_weight_approach_monster, METHOD, ANY, "same for ApproachMonster")                     \
    X(target_weight_approach_human, METHOD, ANY, "same for ApproachHuman")                         \
    X(target_weight_avoid_monster, METHOD, ANY, "same for AvoidMonster")                           \
    X(target_weight_avoid_human, METHOD, ANY, "same for AvoidHuman")                               \
    X(current_action_weight_modifier, METHOD, ANY,                                                 \
      "modifier applied to the weight of the action already running")                              \
    X(human_counter_attack_chance_against_human, METHOD, ANY,                                      \
      "chance that an attacked human strikes back at a human")                                     \
    X(human_counter_attack_chance_against_monster, METHOD, ANY,                                    \
      "chance that an attacked human strikes back at a monster")                                   \
    X(ai_human_traits, ARRAY, TRAIT_RANGES, "trait sets of the computer-controlled humans")        \
    X(show_player_marker_at_beginning, BOOL, ANY,                                                  \
      "mark the player's human at the start of a trial")                                           \
    X(show_player_marker_while_playing, BOOL, ANY, "keep the player marker during play")           \
    X(show_crosshair_approach_food, BOOL, ANY, "show the player's crosshair for this action")      \
    X(show_crosshair_approach_monster, BOOL, ANY, "same")                                          \
    X(show_crosshair_approach_human, BOOL, ANY, "same")                                            \
    X(show_crosshair_avoid_monster, BOOL, ANY, "same")                                             \
    X(show_crosshair_avoid_human, BOOL, ANY, "same")                                               \
    X(show_crosshair_attack_monster, BOOL, ANY, "same")                                            \
    X(show_crosshair_attack_human, BOOL, ANY, "same")                                              \
    X(show_crosshair_exchange_with_human, BOOL, ANY, "same")                                       \
    X(show_build_info_watermark, BOOL, ANY, "create the build-information watermark at start-up")  \
    X(level_background_color, STRING, ANY, "background colour of levels")                          \
    X(trait_menu_slider_is_triangle, BOOL, ANY, "draw the trait sliders as triangles")             \
    X(show_keyboard_prompts, BOOL, ANY, "show keyboard hints")                                     \
    X(non_player_sound_volume, NUMBER, FRACTION, "volume of sounds not caused by the player")      \
    X(score_animation_increment, NUMBER, POSITIVE, "step of the score count-up animation")         \
    X(url_score_randomization, NUMBER, NON_NEGATIVE,                                               \
      "randomisation applied to the score passed on to `next_url`")                                \
    X(next_url, STRING, ANY, "address opened after the session")                                   \
    X(shuffle_levels, BOOL, ANY, "play the levels of a session in random order")                   \
    X(levels, ARRAY, LEVEL_LIST,                                                                   \
      "the levels of a session (passed to the local session at start-up)")
