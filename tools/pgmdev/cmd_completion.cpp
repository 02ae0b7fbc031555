// `pgmdev completion bash|zsh`: a shell completion script written from the command tree
// itself, so it can never lag behind the commands and options the tool has.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>

#include "cli.h"
#include "output.h"

namespace pgmdev::cli {

namespace {

// One bash associative-array entry per command: its path, then the words that may follow.
void collect(CLI::App* command, const std::string& path, std::string& subs, std::string& options) {
  std::string sub_words, option_words;
  for (const CLI::App* sub : command->get_subcommands([](CLI::App*) { return true; })) {
    sub_words += (sub_words.empty() ? "" : " ") + sub->get_name();
  }
  for (const CLI::Option* option : command->get_options()) {
    for (const std::string& name : option->get_lnames()) {
      option_words += (option_words.empty() ? "" : " ") + ("--" + name);
    }
  }
  subs += "  [\"" + path + "\"]=\"" + sub_words + "\"\n";
  options += "  [\"" + path + "\"]=\"" + option_words + "\"\n";
  for (CLI::App* sub : command->get_subcommands([](CLI::App*) { return true; })) {
    collect(sub, path + " " + sub->get_name(), subs, options);
  }
}

std::string bash_script(CLI::App& root) {
  std::string subs, options;
  collect(&root, "pgmdev", subs, options);  // bash refuses an empty key
  return "# bash completion for pgmdev, written by 'pgmdev completion bash'\n"
         "declare -gA _pgmdev_subcommands=(\n" +
         subs +
         ")\n"
         "declare -gA _pgmdev_options=(\n" +
         options +
         ")\n"
         "_pgmdev() {\n"
         "  local cur=\"${COMP_WORDS[COMP_CWORD]}\" path=pgmdev word i\n"
         "  # The command reached so far: each word that is a subcommand of the path before it.\n"
         "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
         "    word=\"${COMP_WORDS[i]}\"\n"
         "    if [[ \" ${_pgmdev_subcommands[$path]} \" == *\" $word \"* ]]; then\n"
         "      path=\"$path $word\"\n"
         "    fi\n"
         "  done\n"
         "  local words=\"${_pgmdev_subcommands[$path]}\"\n"
         "  if [[ \"$cur\" == -* ]]; then words=\"${_pgmdev_options[$path]}\"; fi\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
         "}\n"
         "complete -F _pgmdev pgmdev\n";
}

// zsh runs the bash script through its bash-completion layer.
std::string zsh_script(CLI::App& root) {
  return "#compdef pgmdev\n"
         "# zsh completion for pgmdev, written by 'pgmdev completion zsh'\n"
         "autoload -U +X bashcompinit && bashcompinit\n" +
         bash_script(root);
}

void list_commands(CLI::App* command, const std::string& path,
                   std::vector<Fields::value_type>& rows) {
  const auto subs = command->get_subcommands([](CLI::App*) { return true; });
  if (subs.empty()) rows.emplace_back(path, command->get_description());
  for (CLI::App* sub : subs) list_commands(sub, path + " " + sub->get_name(), rows);
}

}  // namespace

std::string command_summary(CLI::App& root) {
  Fields rows;
  list_commands(&root, "pgmdev", rows);
  std::ostringstream text;
  text << "Commands:\n";
  size_t width = 0;
  for (const auto& row : rows) width = std::max(width, row.first.size());
  for (const auto& [path, description] : rows) {
    text << "  " << path << std::string(width - path.size() + 2, ' ') << description << '\n';
  }
  return text.str();
}

void register_completion_command(CLI::App& app) {
  auto shell = std::make_shared<std::string>();
  CLI::App* completion = app.add_subcommand(
      "completion", "Print a shell completion script (bash or zsh) for the tool's commands");
  completion->add_option("SHELL", *shell, "bash or zsh")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh"}));
  completion->callback(
      [&app, shell] { std::cout << (*shell == "bash" ? bash_script(app) : zsh_script(app)); });
}

}  // namespace pgmdev::cli
