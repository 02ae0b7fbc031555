// `pgmdev completion bash|zsh`: a shell completion script written from the command tree
// itself, so it can never lag behind the commands and options the tool has, with the
// catalogue's family and device names and the words KIND and SHELL take.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>

#include "cli.h"
#include "names.h"
#include "output.h"

namespace pgmdev::cli {

namespace {

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

// The words an option's or argument's value may be, by its name: catalogue names for
// --family and --device, the two kinds and the two shells.
std::string value_words(const std::string& name) {
  if (name == "--family") return joined(catalog_family_names());
  if (name == "--device") return joined(catalog_device_names());
  if (name == "KIND") return "spi nand";
  if (name == "SHELL") return "bash zsh";
  return "";
}

struct Words {
  std::string subs, options, values, arguments;
};

// Bash associative-array entries per command path: the subcommands and options that may
// follow it, the values of its options ("path --option") and of its first argument.
void collect(CLI::App* command, const std::string& path, Words& words) {
  std::string sub_words, option_words;
  for (const CLI::App* sub : command->get_subcommands([](CLI::App*) { return true; })) {
    sub_words += (sub_words.empty() ? "" : " ") + sub->get_name();
  }
  bool first_argument = true;
  for (const CLI::Option* option : command->get_options()) {
    for (const std::string& name : option->get_lnames()) {
      option_words += (option_words.empty() ? "" : " ") + ("--" + name);
      const std::string values = value_words("--" + name);
      if (!values.empty())
        words.values += "  [\"" + path + " --" + name + "\"]=\"" + values + "\"\n";
    }
    if (option->get_lnames().empty() && first_argument) {
      first_argument = false;
      const std::string values = value_words(option->get_name());
      if (!values.empty()) words.arguments += "  [\"" + path + "\"]=\"" + values + "\"\n";
    }
  }
  words.subs += "  [\"" + path + "\"]=\"" + sub_words + "\"\n";
  words.options += "  [\"" + path + "\"]=\"" + option_words + "\"\n";
  for (CLI::App* sub : command->get_subcommands([](CLI::App*) { return true; })) {
    collect(sub, path + " " + sub->get_name(), words);
  }
}

std::string bash_script(CLI::App& root) {
  Words words;
  collect(&root, "pgmdev", words);  // bash refuses an empty key
  return "# bash completion for pgmdev, written by 'pgmdev completion bash'\n"
         "declare -gA _pgmdev_subcommands=(\n" +
         words.subs +
         ")\n"
         "declare -gA _pgmdev_options=(\n" +
         words.options +
         ")\n"
         "declare -gA _pgmdev_values=(\n" +
         words.values +
         ")\n"
         "declare -gA _pgmdev_arguments=(\n" +
         words.arguments +
         ")\n"
         "_pgmdev() {\n"
         "  local cur=\"${COMP_WORDS[COMP_CWORD]}\" prev=\"${COMP_WORDS[COMP_CWORD-1]}\"\n"
         "  local path=pgmdev word i last=0\n"
         "  # The command reached so far: each word that is a subcommand of the path before it.\n"
         "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
         "    word=\"${COMP_WORDS[i]}\"\n"
         "    if [[ \" ${_pgmdev_subcommands[$path]} \" == *\" $word \"* ]]; then\n"
         "      path=\"$path $word\"\n"
         "      last=$i\n"
         "    fi\n"
         "  done\n"
         "  local words=\"${_pgmdev_subcommands[$path]}\"\n"
         "  if [[ \"$cur\" == -* ]]; then\n"
         "    words=\"${_pgmdev_options[$path]}\"\n"
         "  elif [[ -v \"_pgmdev_values[$path $prev]\" ]]; then\n"
         "    words=\"${_pgmdev_values[$path $prev]}\"\n"
         "  elif ((last == COMP_CWORD - 1)) && [[ -v \"_pgmdev_arguments[$path]\" ]]; then\n"
         "    words=\"${_pgmdev_arguments[$path]}\"\n"
         "  fi\n"
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

namespace {

void add_help(CLI::App* command, const std::string& path, std::string& text) {
  for (CLI::App* sub : command->get_subcommands([](CLI::App*) { return true; })) {
    const std::string sub_path = path + " " + sub->get_name();
    std::string help = sub->help();
    // The footer of the root (commands, environment, exit codes) is said once, at the top.
    const std::string footer = sub->get_footer();
    if (!footer.empty() && help.find(footer) != std::string::npos) help.erase(help.find(footer));
    const std::string usage = "Usage: " + sub->get_name() + " ";
    if (help.find(usage) != std::string::npos) {
      help.replace(help.find(usage), usage.size(), "Usage: " + sub_path + " ");
    }
    text += "\n" + sub_path + "\n" + help;
    add_help(sub, sub_path, text);
  }
}

}  // namespace

std::string help_of_every_command(CLI::App& root) {
  std::string text = root.help();
  add_help(&root, "pgmdev", text);
  return text;
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
