# header: prepares a header of the C++ interface for Doxygen. Private classes and namespace detail are no
# part of the interface.
# SPDX-License-Identifier: MIT
/std::ranges::enable_/d
/^private:/,/^};/{/^  (struct|class) .*\{$/,/^  \};/d}
s,^namespace (cf::)?detail \{,/// @cond\n&,
s,^\} // namespace (cf::)?detail,&\n/// @endcond,
