# page: prepares a page of the manual for Doxygen, which reads some marks otherwise than viewers of
# Markdown do.
# SPDX-License-Identifier: MIT

# Each page begins with a list of its sections.
1s/$/\n\n[TOC]/

# The lines of a code block stay as they are.
/^```/,/^```$/b

# A percent sign in front of a letter would vanish: Doxygen takes it for "do not link this word".
s/%([A-Za-z])/%%\1/g

# A page that begins a table row or a list item is a subpage: the side tree shows it.
s/^(\||-) \[([^]]+)\]\(([a-z-]+)\.md\)/\1 @subpage md_docs_\3 "\2"/
s/(@subpage md_docs_[a-z]+)-/\1_/

# Examples and headers have pages of their own; of any other file outside the manual the name is left.
s/\]\(\.\.\/(examples|include)\/([^)]+)\)/](@ref \2)/g
s/\[([^]]+)\]\(\.\.[^)]*\)/`\1`/g
