#pragma once

class QLocale;

/// The language of the window's texts.
namespace Language
{

/// Shows all texts in Simplified Chinese where @p locale is Chinese and uses that script, and in
/// English otherwise, from now on: those of the window, of Qt and of the framework. To be called
/// before a window is made.
void install(const QLocale &locale);

} // namespace Language
