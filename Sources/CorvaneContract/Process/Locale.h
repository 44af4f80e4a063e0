// The locale of a program of this house. Called first in main, before any application object and any other thread.
#pragma once

namespace corvane {

// Qt expects a locale whose characters are UTF-8 and complains on standard error about any other, such as that of a
// bare LANG=C. Where the user's locale is another, or is not installed, this process and its children use C.UTF-8.
void ensureUtf8Locale();

} // namespace corvane
