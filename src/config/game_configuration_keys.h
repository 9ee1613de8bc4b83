#pragma once
// The schema of configurations.json: every key, the type its value must have and what it
// controls, in file order. The loader, the typed Configs record and the documentation all come
// from this one table, so adding a key is one line here (and one in the shipped file).
//
// Types: NUMBER (double), BOOL, STRING, ARRAY (a dynamic Value), METHOD (an expression string
// compiled into a ConfigMethod).

#define VELDRA_GAME_CONFIGURATION_KEYS(X)                                                       \
    X(configuration_version, STRING, "free version label of the file")                          \
    X(options_openness, ARRAY, "the values offered for openness in the traits menu")            \
    X(options_conscientiousness, ARRAY, "same for conscientiousness")                           \
    X(options_extraversion, ARRAY, "same for extraversion")                                     \
    X(options_agreeableness, ARRAY, "same for agreeableness")                                   \
    X(options_neuroticism, ARRAY, "same for neuroticism")                                       \
    X(trial_time, NUMBER, "length of a trial")                                                  \
    X(trial_score, METHOD, "score formula of a trial")                                          \
    X(game_speed, NUMBER, "simulation speed factor")                                            \
    X(show_trial_result_menu, BOOL, "show the result menu after a trial")                       \
    X(leave_traits_menu_open_when_playing, BOOL,                                                \
      "keep the personality-traits menu open during play")                                      \
    X(human_sight_range, METHOD, "sight range of a human")                                      \
    X(human_energy_max, NUMBER, "energy cap of a human")                                        \
    X(human_starting_energy, NUMBER, "energy of a human at spawn")                              \
    X(monster_energy_max, NUMBER, "energy cap of a monster")                                    \
    X(monster_starting_energy, NUMBER, "energy of a monster at spawn")                          \
    X(human_energy_gain_eat_food, NUMBER, "energy gained by eating food")                       \
    X(human_energy_gain_kill_monster, NUMBER, "energy gained by killing a monster")             \
    X(human_energy_gain_kill_human, NUMBER, "energy gained by killing a human")                 \
    X(human_constant_energy_loss_amount, NUMBER, "energy lost at each constant-loss tick")      \
    X(human_constant_energy_loss_frequency, NUMBER, "interval of the constant energy loss")     \
    X(attack_frequency, NUMBER, "interval between attacks")                                     \
    X(exchange_frequency, NUMBER, "interval between exchanges")                                 \
    X(action_update_frequency, NUMBER, "interval between action re-decisions of AI humans")     \
    X(move_speed_approach_food, METHOD, "move speed while approaching food")                    \
    X(move_speed_approach_monster, METHOD, "move speed while approaching a monster")            \
    X(move_speed_approach_human, METHOD, "move speed while approaching a human")                \
    X(move_speed_avoid_monster, METHOD, "move speed while avoiding a monster")                  \
    X(move_speed_avoid_human, METHOD, "move speed while avoiding a human")                      \
    X(move_speed_attack_monster, METHOD, "move speed while attacking a monster")                \
    X(move_speed_attack_human, METHOD, "move speed while attacking a human")                    \
    X(move_speed_exchange_with_human, METHOD, "move speed while going to exchange")             \
    X(move_speed_explore, METHOD, "move speed while exploring")                                 \
    X(human_sand_move_speed_multiplier, NUMBER, "speed factor of a human on sand")              \
    X(monster_sand_move_speed_multiplier, NUMBER, "speed factor of a monster on sand")          \
    X(monster_movement_speed, NUMBER, "monster speed when chasing")                             \
    X(monster_exploration_movement_speed, NUMBER, "monster speed when roaming")                 \
    X(monster_sight_range, NUMBER, "monster sight range")                                       \
    X(monster_exploration_range, NUMBER, "monster roaming range")                               \
    X(human_fight_hit_weight, METHOD, "weight of \"hit\" in a human's fight outcome draw")      \
    X(human_fight_miss_weight, METHOD, "weight of \"miss\"")                                    \
    X(human_fight_flee_weight, METHOD, "weight of \"flee\"")                                    \
    X(monster_fight_hit_weight, NUMBER, "weight of \"hit\" in a monster's fight outcome draw")  \
    X(monster_fight_miss_weight, NUMBER, "weight of \"miss\"")                                  \
    X(monster_fight_flee_weight, NUMBER, "weight of \"flee\"")                                  \
    X(human_first_attack_damage, METHOD, "damage of a human's first attack")                    \
    X(human_normal_attack_damage, METHOD, "damage of a human's later attacks")                  \
    X(human_attacker_energy_gain, METHOD, "energy a human attacker gains per hit")              \
    X(monster_first_attack_damage, NUMBER, "damage of a monster's first attack")                \
    X(monster_normal_attack_damage, NUMBER, "damage of a monster's later attacks")              \
    X(monster_attacker_energy_gain, NUMBER, "energy a monster gains per hit")                   \
    X(num_memory_slots, NUMBER, "how many memories a human keeps")                              \
    X(exchange_give_weight, METHOD, "weight of choosing to give in an exchange")                \
    X(exchange_take_weight, METHOD, "weight of choosing to take in an exchange")                \
    X(exchange_collaboration_energy_gain, NUMBER, "energy each side gains when both give")      \
    X(exchange_being_ripped_off_energy_gain, NUMBER,                                            \
      "energy of the side that gave while the other took")                                      \
    X(exchange_ripping_off_energy_gain, NUMBER,                                                 \
      "energy of the side that took while the other gave")                                      \
    X(exchange_back_chance, METHOD, "chance of exchanging back")                                \
    X(human_exploration_range, METHOD, "exploration range of a human")                          \
    X(weight_approach_food, METHOD, "action-type weight of ApproachFood")                       \
    X(weight_approach_monster, METHOD, "action-type weight of ApproachMonster")                 \
    X(weight_approach_human, METHOD, "action-type weight of ApproachHuman")                     \
    X(weight_avoid_monster, METHOD, "action-type weight of AvoidMonster")                       \
    X(weight_avoid_human, METHOD, "action-type weight of AvoidHuman")                           \
    X(weight_attack_monster, METHOD, "action-type weight of AttackMonster")                     \
    X(weight_attack_human, METHOD, "action-type weight of AttackHuman")                         \
    X(weight_exchange_with_human, METHOD, "action-type weight of ExchangeWithHuman")            \
    X(weight_explore, METHOD, "action-type weight of Explore")                                  \
    X(target_weight_approach_food, METHOD, "weight of one candidate target for ApproachFood")   \
    X(target_weight_approach_monster, METHOD, "same for ApproachMonster")                       \
    X(target_weight_approach_human, METHOD, "same for ApproachHuman")                           \
    X(target_weight_avoid_monster, METHOD, "same for AvoidMonster")                             \
    X(target_weight_avoid_human, METHOD, "same for AvoidHuman")                                 \
    X(current_action_weight_modifier, METHOD,                                                   \
      "modifier applied to the weight of the action already running")                           \
    X(human_counter_attack_chance_against_human, METHOD,                                        \
      "chance that an attacked human strikes back at a human")                                  \
    X(human_counter_attack_chance_against_monster, METHOD,                                      \
      "chance that an attacked human strikes back at a monster")                                \
    X(ai_human_traits, ARRAY, "trait sets of the computer-controlled humans")                   \
    X(show_player_marker_at_beginning, BOOL, "mark the player's human at the start of a trial") \
    X(show_player_marker_while_playing, BOOL, "keep the player marker during play")             \
    X(show_crosshair_approach_food, BOOL, "show the player's crosshair for this action")        \
    X(show_crosshair_approach_monster, BOOL, "same")                                            \
    X(show_crosshair_approach_human, BOOL, "same")                                              \
    X(show_crosshair_avoid_monster, BOOL, "same")                                               \
    X(show_crosshair_avoid_human, BOOL, "same")                                                 \
    X(show_crosshair_attack_monster, BOOL, "same")                                              \
    X(show_crosshair_attack_human, BOOL, "same")                                                \
    X(show_crosshair_exchange_with_human, BOOL, "same")                                         \
    X(show_build_info_watermark, BOOL, "create the build-information watermark at start-up")    \
    X(level_background_color, STRING, "background colour of levels")                            \
    X(trait_menu_slider_is_triangle, BOOL, "draw the trait sliders as triangles")               \
    X(show_keyboard_prompts, BOOL, "show keyboard hints")                                       \
    X(non_player_sound_volume, NUMBER, "volume of sounds not caused by the player")             \
    X(score_animation_increment, NUMBER, "step of the score count-up animation")                \
    X(url_score_randomization, NUMBER,                                                          \
      "randomisation applied to the score passed on to `next_url`")                             \
    X(next_url, STRING, "address opened after the session")                                     \
    X(shuffle_levels, BOOL, "play the levels of a session in random order")                     \
    X(levels, ARRAY, "the levels of a session (passed to the local session at start-up)")
