#pragma once

/// The language of the host's window.
namespace Language {

/// Installs the translations of the host and of Qt's dialogs. `language` is the setting
/// "language": 0 Chinese, 1 English. Call before creating the window. Texts that are printed or
/// written to files stay English.
void install(int language);

} // namespace Language
