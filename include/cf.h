/**
 * @file cf.h
 * @brief cf: hierarchical configuration files as trees of groups, parameters and remarks.
 *
 * SPDX-License-Identifier: MIT
 *
 * The road of a file: ::cflex reads it into a tree, ::cfparse checks the tree against the
 * application's symbols and evaluates its parameters, ::cfcatalog indexes it, the lookups and
 * getters read it, the cfcat operations edit tree and catalog together, ::cfprint writes it back
 * with its remarks and layout, and ::cfdelgrp releases it.
 *
 * What holds everywhere:
 *
 * - *Text* is a zero-terminated string that the library does not write to. The texts of an element
 *   are never NULL; an absent text is the empty text.
 * - A group owns what is linked under it. An element in no group belongs to the caller. Texts given
 *   to a constructor are copied.
 * - A pointer argument must not be NULL unless its description says what NULL does.
 * - No operation reports through errno. Diagnostics of reading, checking and printing go to ::emsg
 *   and ::wmsg; exhausted memory goes to ::fail; everything else is a result.
 * - No operation's use of stack grows with its input, but for one step for each reference that is
 *   followed from one to the next, as in catalogs stacked on one another.
 * - Which way an operation goes, with defaults alone or with slots, is decided when it begins: a
 *   slot that is replaced while it runs may not be called.
 * - A tree and all catalogs over it are for one thread at a time. Operations that only read may run
 *   in several threads at once as long as nobody writes. The memory manager is the only state
 *   shared between trees.
 * - The memory manager and every function that an application supplies may leave by a C++ exception
 *   or by longjmp(): what is linked stays a whole tree that can be read on, edited and deleted. An
 *   exception leaks nothing; longjmp() leaks at most what the interrupted call held unlinked.
 * - Two texts are *equal* when strcasecmp() gives 0: case does not count, and which bytes are the
 *   two cases of one letter is for the process's locale to say.
 */
#ifndef CF_H
#define CF_H

#include <stddef.h>
#include <stdio.h>

/** @name Version
 * The one place that holds the version: the build reads it from here.
 *
 * Raise PATCH for a change that no caller can see but as a mended fault; MINOR for new names; MAJOR
 * when a name goes, or when the layout of a record, a type or a promise of this header changes. The
 * soname follows MAJOR, and the names that a MINOR adds get a node of their own in the symbol map.
 * @{ */
#define CF_VERSION_MAJOR 0 /**< Raised when existing callers must change or recompile. */
#define CF_VERSION_MINOR 1 /**< Raised when names are added. */
#define CF_VERSION_PATCH 0 /**< Raised when faults are mended. */
/** @} */

/** @cond marks */
#if defined(__GNUC__)
#define CF_API __attribute__((visibility("default")))
#define CF_FORMAT __attribute__((format(printf, 1, 2)))
#else
#define CF_API
#define CF_FORMAT
#endif
/** @endcond */

#ifdef __cplusplus
extern "C" {
#endif

/** @defgroup cf_node Elements
 * Records, links, construction, deletion, copies, iteration and search.
 * @{ */

/** Kind of a node. */
typedef enum cfnode_t {
  cf_anchor = 0, /**< List head inside a group; no element, and every walk ends on it. */
  cf_group = 1,  /**< `link` of a ::cfgroup. */
  cf_remark = 2, /**< `link` of a ::cfremark. */
  cf_param = 3   /**< `link` of a ::cfparam. */
} cfnode_t;

/** Kind of a group. Only ::cf_grpinst is a group of the configuration; printer, check, comparison,
 * catalog and scope strings see through every other kind. */
typedef enum cfgroup_t {
  cf_grptop = 0,  /**< Root of a tree, and of a catalog over it. */
  cf_grpcat = 1,  /**< Catalog level: a category (`cat` set) or a name (`name` set). */
  cf_grpgrp = 2,  /**< Block that binds a run of remarks to the group on the next line. */
  cf_grpinst = 3, /**< Group as written in the file: an instance. */
  cf_grpval = 4,  /**< Catalog level: all parameters of the key in `name`. */
  cf_grppar = 5,  /**< Block that binds a run of remarks to the parameter on the next line. */
  cf_grprem = 6   /**< Block that holds a run of remarks on consecutive lines. */
} cfgroup_t;

typedef struct cfnode cfnode;
typedef struct cfgroup cfgroup;
typedef struct cfremark cfremark;
typedef struct cfparam cfparam;

/** An evaluator: turns the text of a parameter into a typed value. Asked in three ways:
 *
 * | `val` | `vval`  | question                  | answer                                          |
 * |-------|---------|---------------------------|-------------------------------------------------|
 * | NULL  | NULL    | size of a value?          | > 0 bytes; 0: the text is the value; < 0: it    |
 * |       |         |                           | depends on the text                             |
 * | text  | NULL    | valid, and of which size? | >= 0: valid, size in bytes; < 0: not valid      |
 * | text  | storage | convert into the storage  | >= 0: done; < 0: not valid                      |
 *
 * The storage has at least the size announced and is aligned as malloc() aligns. An evaluator may
 * have written into it and still refuse. */
typedef int (*cfeval_t)(const char *val, void *vval);

/** The link record at the head of every element, and the anchor inside every group.
 *
 * The children of a group form a ring through its anchor: `elem.next` is the first, `elem.prev` the
 * last, and an empty group's anchor points at itself. */
struct cfnode {
  cfnode *prev;   /**< Previous node of the ring; NULL on a node that is in no list. */
  cfnode *next;   /**< Next node of the ring; NULL on a node that is in no list. */
  cfgroup *group; /**< Element: the group that holds it, or NULL. Anchor: its owner, or NULL. */
  cfnode *ref;    /**< Reference: the `link` of its target. NULL on every other node. */
  cfnode_t type;  /**< Kind of the node. */
};

/** A group. One allocation: the record, then `cat`, then `name`; a reference is the record alone
 * and shares the texts of its target. */
struct cfgroup {
  cfnode link;      /**< Its place in its parent's list; `link.type` is ::cf_group. */
  long row;         /**< Line number from 1; negative: no line of a file. */
  const char *cat;  /**< Category; may be empty. */
  const char *name; /**< Name; may be empty. */
  cfgroup_t type;   /**< Kind of the group. */
  cfnode elem;      /**< Anchor of its children; `elem.group` is this group. */
};

/** A remark: one line of comment text. One allocation: the record, then `txt`. */
struct cfremark {
  cfnode link;     /**< Its place in its group's list; `link.type` is ::cf_remark. */
  long row;        /**< Line number from 1; negative: no line of a file. */
  const char *txt; /**< Text behind the mark; may be empty. */
};

/** A parameter. One allocation: the record, a value buffer of 16 bytes, then `key`, then `val`; a
 * reference is the record alone, shares the texts of its target and copies `eval` and `vval`. */
struct cfparam {
  cfnode link;      /**< Its place in its group's list; `link.type` is ::cf_param. */
  long row;         /**< Line number from 1; negative: no line of a file. */
  const char *key;  /**< Key; may be empty. */
  const char *val;  /**< Value as text; may be empty. */
  cfeval_t eval;    /**< The evaluator that made `vval`; NULL while not evaluated. */
  const void *vval; /**< Evaluated value, NULL while not evaluated: `val` itself (size 0), the value
                       buffer (size 1 to 16) or a block of the manager that the parameter owns. */
};

/** The memory manager: every allocation and release of the library goes through it. */
struct cfmmgr {
  /** Gives a block of at least `size` bytes, aligned as malloc() aligns. It gives a usable block or
   * does not return: nobody tests its result. The default calls ::fail when malloc() gives NULL. */
  void *(*cfmalloc)(size_t size);
  /** Releases a block that `cfmalloc` gave. A block counts as released also if this leaves by an
   * exception. The default is free(). */
  void (*cffree)(void *block);
};

/** Installs a memory manager for the whole process, from the next allocation or release on. No
 * element records which manager made it: blocks of the former manager are released by the new one.
 * @param mmgr copied; NULL changes nothing and so only asks.
 * @return the manager in force before the call. */
#if defined(__GNUC__) && defined(__cplusplus)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow" /* record and operation share a name on purpose */
#endif
CF_API struct cfmmgr cfmmgr(const struct cfmmgr *mmgr);
#if defined(__GNUC__) && defined(__cplusplus)
#pragma GCC diagnostic pop
#endif

/** Initialises a node: `type`, `group` = `pgrp`, no `ref`. An anchor becomes an empty ring, any
 * other node is in no list. An anchor with NULL `pgrp` is a ring that is no group's.
 * @return `nd`. */
CF_API cfnode *cfinitnd(cfnode *nd, cfnode_t type, cfgroup *pgrp);

/** Initialises a node as a reference to `ref`, whose type it takes over.
 * @return `nd`. */
CF_API cfnode *cfinitrefnd(cfnode *nd, cfnode *ref, cfgroup *pgrp);

/** Takes an element out of its list; the caller owns it then. `prev`, `next` and `group` become
 * NULL, so it may be linked, deleted or taken out again at any time, whatever became of its
 * neighbours.
 * @param nd no anchor. One in no list stays as it is.
 * @return `nd`. */
CF_API cfnode *cfunlknd(cfnode *nd);

/** Moves an element to the end of a group, out of the list that it is in. The group owns it then.
 * @return `grp`.
 * @warning A group put under itself or below is not detected, here and in all link operations. */
CF_API cfgroup *cflinknd(cfgroup *grp, cfnode *nd);

/** Moves an element directly in front of another, into its group.
 * @param it an element or an anchor; with an anchor `nd` comes last. With an `it` that is in no
 *     list `nd` ends in no list too.
 * @param nd another node than `it`, and no anchor.
 * @return `it`. */
CF_API cfnode *cfchainnd(cfnode *it, cfnode *nd);

/** Puts an element in the place of another. No swap: the place that `nd` had closes.
 * @param it the element that leaves, no anchor. If it is in no list, `nd` ends in no list too.
 * @param nd another element than `it`.
 * @return `it`, in no list, with its children and its value: the caller owns it. */
CF_API cfnode *cfxcgnd(cfnode *it, cfnode *nd);

/** ::cflinknd for a group. @return `grp`. */
CF_API cfgroup *cfaddgrp(cfgroup *grp, cfgroup *elem);
/** ::cflinknd for a remark. @return `grp`. */
CF_API cfgroup *cfaddrem(cfgroup *grp, cfremark *elem);
/** ::cflinknd for a parameter. @return `grp`. */
CF_API cfgroup *cfaddpar(cfgroup *grp, cfparam *elem);
/** ::cfchainnd for a group. @return `it`. */
CF_API cfnode *cfchaingrp(cfnode *it, cfgroup *elem);
/** ::cfchainnd for a remark. @return `it`. */
CF_API cfnode *cfchainrem(cfnode *it, cfremark *elem);
/** ::cfchainnd for a parameter. @return `it`. */
CF_API cfnode *cfchainpar(cfnode *it, cfparam *elem);

/** Makes an empty group in no list.
 * @param cat,name copied; NULL means the empty text.
 * @return a new group that the caller owns until it is linked. */
CF_API cfgroup *cfnewgrp(const char *cat, const char *name, cfgroup_t type, long row);

/** Makes a remark in no list.
 * @param txt copied; NULL means the empty text.
 * @return a new remark that the caller owns until it is linked. */
CF_API cfremark *cfnewrem(const char *txt, long row);

/** Makes a parameter in no list, not evaluated.
 * @param key,val copied; NULL means the empty text.
 * @return a new parameter that the caller owns until it is linked. */
CF_API cfparam *cfnewpar(const char *key, const char *val, long row);

/** Makes a reference to a group: no children, the target's `type`, `row`, `cat` and `name`.
 * @return a new reference that the caller owns until it is linked. It shares the target's texts and
 *     is valid only as long as the target is; it does not follow later changes of the target. */
CF_API cfgroup *cfnewrefgrp(cfgroup *grp);

/** Makes a reference to a parameter, with the target's `row`, `key`, `val`, `eval` and `vval`.
 * @return as ::cfnewrefgrp. It shares the target's value too. */
CF_API cfparam *cfnewrefpar(cfparam *par);

/** Deletes an element by its kind, with all that it holds; it leaves its list first.
 * @param nd NULL and an anchor: nothing happens.
 * @warning References to a deleted element are not detected; delete through the catalog where there
 *     are some. */
CF_API void cfdelnd(cfnode *nd);

/** Deletes a group with all it holds: children before their group, last child first. A reference is
 * deleted without its target, which is not read.
 * @param elem NULL: nothing happens. */
CF_API void cfdelgrp(cfgroup *elem);

/** Deletes a remark. @param elem NULL: nothing happens. */
CF_API void cfdelrem(cfremark *elem);

/** Deletes a parameter, first its value if that is a block of its own. A reference releases no
 * value.
 * @param elem NULL: nothing happens. */
CF_API void cfdelpar(cfparam *elem);

/** Deletes all children of a group, last first; the group stays where it is.
 * @param grp NULL gives NULL.
 * @return `grp`. */
CF_API cfgroup *cfclrgrp(cfgroup *grp);

/** Copies an element by its kind, with all that it holds.
 * @return a new element in no list that the caller owns; NULL for NULL and for an anchor. */
CF_API cfnode *cfdupnd(const cfnode *nd);

/** Copies a group with all it holds: same kind, texts, rows and order of children.
 *
 * A reference is copied together with its target: the result is a reference to a copy of the
 * target. That copy is in no list and the caller owns it as well, for each reference inside the
 * group too; ::cfcatdelgrp on the result deletes them all.
 * @return a new group in no list that the caller owns; NULL for NULL. */
CF_API cfgroup *cfdupgrp(const cfgroup *grp);

/** Copies a remark.
 * @return a new remark in no list that the caller owns; NULL for NULL. */
CF_API cfremark *cfduprem(const cfremark *rem);

/** Copies a parameter. If it is evaluated the copy is evaluated afresh, with the same evaluator;
 * should that refuse, the copy is not evaluated. A reference is copied together with its target,
 * as in ::cfdupgrp.
 * @return a new parameter in no list that the caller owns; NULL for NULL. */
CF_API cfparam *cfduppar(const cfparam *par);

/** @return the first child of a group, or its anchor if it has none; never NULL. */
CF_API cfnode *cfiterator(cfgroup *grp);

/** Steps an iterator to the next node of its list; on the anchor it stays. Step before deleting the
 * element under the iterator.
 * @return the new position, which may be the anchor. */
CF_API cfnode *cfnext(cfnode **it);

/** @return the kind of a node. */
CF_API cfnode_t cftype(const cfnode *it);
/** @return 1 if the node is an anchor, that is the end of a list, else 0. */
CF_API int cfend(const cfnode *it);
/** @return 1 if the group has no child, else 0. */
CF_API int cfempty(const cfgroup *grp);
/** @return the node as a group; NULL if it is NULL or something else. */
CF_API cfgroup *cfgrp(cfnode *nd);
/** @return the node as a remark; NULL if it is NULL or something else. */
CF_API cfremark *cfrem(cfnode *nd);
/** @return the node as a parameter; NULL if it is NULL or something else. */
CF_API cfparam *cfpar(cfnode *nd);

/** Searches a list, from `it` on, for a group of kind ::cf_grpcat, ::cf_grpgrp or ::cf_grpinst with
 * texts equal to those given. All searches look at `it` itself first and at one list only.
 * @param cat,name NULL or empty: any.
 * @return the first hit, or the list's anchor (see ::cfend); never NULL. */
CF_API cfnode *cfseekgrp(cfnode *it, const char *cat, const char *name);

/** Searches a list, from `it` on, for a remark or a block of remarks (::cf_grprem).
 * @return the first hit, or the list's anchor; never NULL. */
CF_API cfnode *cfseekrem(cfnode *it);

/** Searches a list, from `it` on, for a parameter with texts equal to those given; while `val` is
 * NULL also for a group of kind ::cf_grpval or ::cf_grppar whose `name` equals `key`.
 * @param key NULL or empty: any.
 * @param val NULL: any. The empty text asks for an empty value.
 * @return the first hit, a parameter or a group (see ::cftype), or the list's anchor; never NULL.
 */
CF_API cfnode *cfseekpar(cfnode *it, const char *key, const char *val);

/** @} */

/** @defgroup cf_value Values
 * Evaluators, evaluation and the typed getters.
 * @{ */

/** Evaluator of "true" and "false" in any case; the value is a `char`, 1 or 0. */
CF_API int cfevbool(const char *val, void *vval);

/** Evaluator of integers as strtol() with base 0 reads them: leading white space, sign, 0x and 0
 * prefixes; nothing may follow. A number out of range gives LONG_MIN or LONG_MAX. The value is a
 * `long`. */
CF_API int cfevint(const char *val, void *vval);

/** As ::cfevint, with strtoll(); the value is a `long long`. */
CF_API int cfevintx(const char *val, void *vval);

/** Evaluator of floating point numbers as strtod() reads them, with hexadecimal, infinite and NaN
 * forms; nothing may follow. The value is a `double`; one out of range is an infinity or near 0.
 * @warning strtod() expects the decimal point of the process's locale: where that is a comma, "1.5"
 *     is refused and "1,5" is read. A program that calls setlocale() and wants the point keeps
 *     LC_NUMERIC at "C" or supplies an evaluator of its own. */
CF_API int cfevflt(const char *val, void *vval);

/** Evaluator of texts: every text is valid and is its own value. */
CF_API int cfevstr(const char *val, void *vval);

/** Evaluates a parameter. If `eval` made its present value, nothing is called. A value stays good
 * until the next successful evaluation with another evaluator, ::cfunevalpar or deletion. A
 * reference has its target evaluated and takes over the result.
 * @param eval not NULL.
 * @return 1 if the parameter holds the value of `eval`; 0 if `eval` refused, and then the parameter
 *     is as before, its former value included.
 * @warning Other references to the same target keep the former value, which may be released memory;
 *     call this on them before their next use. */
CF_API int cfevalpar(cfparam *par, cfeval_t eval);

/** Drops the value of a parameter; through a reference that of the targets too.
 * @return `par`. */
CF_API cfparam *cfunevalpar(cfparam *par);

/** @return the value, 1 or 0, of a parameter evaluated with ::cfevbool, which is not tested. */
CF_API char cfbool(const cfparam *par);
/** @return the value of a parameter evaluated with ::cfevint, which is not tested. */
CF_API long cfint(const cfparam *par);
/** @return the value of a parameter evaluated with ::cfevintx, which is not tested. */
CF_API long long cfintx(const cfparam *par);
/** @return the value of a parameter evaluated with ::cfevflt, which is not tested. */
CF_API double cfflt(const cfparam *par);
/** @return the text of the value as in the file, whether evaluated or not; lives as long as `par`.
 */
CF_API const char *cfstr(const cfparam *par);
/** @return the evaluated value as a text, for evaluators whose value is one, as ::cfevstr; NULL
 *     while not evaluated. Lives as long as the value. */
CF_API const char *cfvstr(const cfparam *par);

/** @} */

/** @defgroup cf_text Reading and printing
 *
 * A file is lines of at most 4095 bytes with their line end, each of one kind (W: white space or
 * none):
 *
 * | kind        | form                                   | becomes                               |
 * |-------------|----------------------------------------|---------------------------------------|
 * | empty       | `W`                                    | nothing                               |
 * | remark      | `W # anything`                         | ::cfremark, less one blank behind #   |
 * | group begin | `W name W { W` or `W cat W name W { W` | ::cfgroup of kind ::cf_grpinst        |
 * | group end   | `W } W`                                | end of the innermost open group       |
 * | parameter   | `W key W = anything`                   | ::cfparam, less white space around it |
 *
 * `cat`, `name` and `key` are identifiers: a letter, then letters, digits and underscores. A zero
 * byte hides the rest of its line. Bytes of 0x80 and above are asked of the locale; in the C locale
 * and in UTF-8 locales they may stand in values and remarks only.
 * @{ */

typedef struct cflexer cflexer;
typedef struct cfprinter cfprinter;

/** The reader's record. Clear it, preset the slots that are to replace a default, call ::cflex.
 * Every slot sees the current line in `row` and its number in `nrow`. Classifiers answer non-zero
 * for yes. A scanner returns a new element in no list with its `row` set; should one return NULL
 * the line is reported as a syntax error. A default scanner whose mark (# { =) the line does not
 * hold takes the end of the line for it. */
struct cflexer {
  int (*isempty)(cflexer *lex);  /**< Is the line empty? Asked first. */
  int (*isremark)(cflexer *lex); /**< Is it a remark? */
  int (*isgrpbeg)(cflexer *lex); /**< Does it begin a group? If so and a group is open, isgrpend is
                                    asked too: yes means that it ends that one as well. */
  int (*isgrpend)(cflexer *lex); /**< Does it end a group? Also asked with NULL `row` at the end of
                                    input if a group is open: yes closes that one. */
  int (*isparam)(cflexer *lex);  /**< Is it a parameter? */
  cfremark *(*scanrem)(cflexer *lex); /**< Makes the remark of a line. */
  cfgroup *(*scangrp)(cflexer *lex);  /**< Makes the group of a line; of which kind is up to it. */
  cfparam *(*scanpar)(cflexer *lex);  /**< Makes the parameter of a line. */
  cfgroup *top;      /**< Root of the tree; the caller's, also after a failed read. */
  char valid;        /**< 1 until a fault was reported. A slot may clear it, and so make
                        the read fail without a message. */
  FILE *fd;          /**< Stream being read. */
  const char *fname; /**< File name for messages; borrowed. */
  const char *row;   /**< Current line, until the next is read; NULL at the end. */
  long nrow;         /**< Number of the current line, from 1. */
};

/** Stores the default into each slot that is NULL and touches nothing else. ::cflex does it by
 * itself.
 * @return `lex`. */
CF_API cflexer *cflexdfl(cflexer *lex);

/** Reads a stream from its position to its end into a new tree, in `lex->top`. It goes on after a
 * fault, so one run reports all of them, to ::emsg, with `fname` and line: "%s:%ld: line overflow"
 * (4095 bytes without a line end; the line is dropped), "%s:%ld: syntax error" (the line is
 * dropped), "%s:%ld: group end without begin" (ignored), "%s:%ld: group begin without end" (the
 * innermost group left open), "%s:%ld: read error".
 *
 * After a read without fault each run of remarks on consecutive lines is put into a block of kind
 * ::cf_grprem, and one that stands directly above a group or parameter is bound to it in a block of
 * kind ::cf_grpgrp or ::cf_grppar. After a faulty one remarks stay where they are.
 * @param lex slots preset or NULL; all other fields are overwritten. A tree in `lex->top` is not.
 * @param fd opened and closed by the caller.
 * @param fname for messages only; borrowed.
 * @return 1 after a clean read, 0 after any fault. The tree is the caller's in both cases. */
CF_API int cflex(cflexer *lex, FILE *fd, const char *fname);

/** The printer's record. Clear it, preset the slots that are to replace a default, call ::cfprint.
 * A slot writes to `fd` and returns a negative number on failure, anything else on success. */
struct cfprinter {
  int (*outempty)(cfprinter *prn, cfgroup *grp); /**< A blank line, indented as what `grp` holds. */
  int (*outremark)(cfprinter *prn, cfremark *rem); /**< A remark line. */
  int (*outgrpbeg)(cfprinter *prn, cfgroup *grp);  /**< The head line of a group. */
  int (*outgrpend)(cfprinter *prn, cfgroup *grp);  /**< The end line of a group. */
  int (*outparam)(cfprinter *prn, cfparam *par);   /**< A parameter line. */
  char valid;                                      /**< 1 until a failure. A slot may clear it. */
  cfgroup *top;                                    /**< The group being printed. */
  FILE *fd;                                        /**< Stream being written. */
  const char *fname;                               /**< File name for the message; borrowed. */
  int brk; /**< Kinds of node before which a blank line is due: bits 1 << kind. */
};

/** Stores the default into each slot that is NULL and touches nothing else. ::cfprint does it by
 * itself.
 * @return `prn`. */
CF_API cfprinter *cfprintdfl(cfprinter *prn);

/** Writes a group and all below it as text, two blanks of indentation for each open group. Remarks
 * keep their binding and free remarks their distance, by blank lines; what ::cflex read prints to
 * a text that reads back as the same tree. A catalog prints without remarks, in catalog order.
 *
 * A failed write stops the printing, and "%s: write error" with `fname` goes to ::emsg, once. The
 * stream is neither flushed nor closed: what only a flush can show is the caller's to test.
 * @param prn slots preset or NULL; all other fields are overwritten.
 * @param top any group; one inside a tree keeps its indentation.
 * @return 1 if all was written, else 0.
 * @warning Texts are written as they are. One that no file could have given does not read back, and
 *     a line can grow past the reader's limit: read back what must not be lost. */
CF_API int cfprint(FILE *fd, cfprinter *prn, cfgroup *top, const char *fname);

/** @} */

/** @defgroup cf_scope Checking and comparing
 *
 * Elements are named to the application by *scope strings*: where in its schema an element stands.
 *
 * | element                 | scope string                               | example              |
 * |-------------------------|--------------------------------------------|----------------------|
 * | parameter in no group   | `::` key                                   | "::verbose"          |
 * | parameter in host alpha | category `::` key                          | "host::addr"         |
 * | parameter in net        | path of the group, key                     | "::net.port"         |
 * | group host alpha in net | path of its parent, name `.` category `::` | "::net.alpha.host::" |
 * | group net               | path of its parent, name `.`               | "::net."             |
 *
 * A category cuts off what stands above it: below host alpha every path begins with `host::`.
 * @{ */

typedef struct cfscope cfscope;
typedef struct cfparser cfparser;
typedef struct cfdiff cfdiff;

/** One definition of the application's table of symbols. */
struct cfscope {
  const char *scope; /**< Its scope string, for the application's own search; never read here. */
  cfeval_t eval;     /**< Evaluator of parameters; NULL: none. No meaning for groups. */
  unsigned int multi : 1; /**< 1: may occur any number of times in one instance; 0: once. */
};

/** The record of a check. */
struct cfparser {
  /** Writes the scope string of an element. With NULL `scbf` it returns the bytes needed,
   * terminator included; with a buffer of that size, all zero, it writes the text. Must not write
   * to `nd`. */
  unsigned int (*genscope)(char *scbf, cfnode *nd);
  /** Gives the definition of a scope string, or NULL if it is not defined. The text is valid during
   * the call only. The record stays the application's and is read at once: it may be filled anew on
   * each call. Must not change the links of the tree. */
  cfscope *(*scopedef)(const char *scope);
  char werr;         /**< Non-zero: an undefined symbol is an error; 0: a warning. */
  char valid;        /**< 1 until an error was reported. */
  cfgroup *top;      /**< The group of the last run. */
  const char *fname; /**< File name for messages; borrowed. */
};

/** Stores the default into each slot that is NULL and touches nothing else: scope strings as told,
 * and no definitions. ::cfparse does it by itself.
 * @return `parser`. */
CF_API cfparser *cfparsedfl(cfparser *parser);

/** Checks all parameters and instances of a tree or catalog against the application's definitions,
 * children before their group, and evaluates the parameters. It goes on after an error. Reports,
 * with `fname` and line, or with `fname` and scope string for an element with a negative `row`:
 * "%s:%ld: undefined symbol" or "%s/%s: undefined symbol" (::emsg if `werr`, else ::wmsg),
 * "%s:%ld: value expression error" or "%s/%s: value expression error" (the evaluator refused),
 * "%s:%ld: duplicate symbol" or "%s/%s: duplicate symbol" (not `multi`, and its like stands ahead
 * of it in the same instance). An element with an empty name or key is a duplicate only of its
 * like.
 * @param parser `werr` and slots preset; all other fields are overwritten.
 * @param fname for messages only; borrowed.
 * @return 1 if no error was reported, else 0. Values stay in the tree in both cases. */
CF_API int cfparse(cfparser *parser, cfgroup *top, const char *fname);

/** Options of a comparison, bits of `opt`. */
enum {
  cf_diffrem = 1, /**< Remarks are compared too. */
  cf_diffref = 2  /**< The targets of references are compared too. */
};

/** The record of a comparison. */
struct cfdiff {
  unsigned int (*genscope)(char *scbf, cfnode *nd); /**< As in ::cfparser. */
  /** Says whether the parameter or instance of this scope takes part: 0 leaves it out with all
   * below it. The text is valid during the call only. */
  int (*chkscope)(const char *scope);
  unsigned int opt; /**< ::cf_diffrem, ::cf_diffref. */
  char diff;        /**< Result of the last comparison. */
};

/** Stores the default into each slot that is NULL and touches nothing else: scope strings as told,
 * and everything takes part. To be called before ::cfdiffnd.
 * @return `diff`. */
CF_API cfdiff *cfdiffdfl(cfdiff *diff);

/** Compares two elements with all below them. What counts is instances, parameters and, as an
 * option, remarks, in their order: not lines, blank lines, blocks, nor case but in remarks. The
 * end of a group does not count either: a parameter behind a group equals the same at the end of
 * that group.
 * @param diff slots filled by ::cfdiffdfl; only `diff` is written.
 * @param nd1,nd2 no anchors. NULL equals NULL alone.
 * @return 1 if they differ, 0 if they are the same; stored in `diff->diff` too. */
CF_API int cfdiffnd(cfdiff *diff, const cfnode *nd1, const cfnode *nd2);

/** @} */

/** @defgroup cf_catalog Catalog
 *
 * A second tree of references, over a tree or over another catalog, filed by category, name and
 * key:
 *
 * - an *owner*, the catalog root or a reference to an instance, holds category levels, name levels
 *   (of instances without category) and value levels, in the order of first appearance;
 * - a category level holds name levels, a name level references to instances, a value level
 *   references to parameters, in the order of the tree.
 *
 * An edit through a catalog changes that catalog, the catalogs under it and the tree in one call;
 * other catalogs over the tree are not told. Given a node of a plain tree, the operations work on
 * that tree.
 * @{ */

/** Makes a catalog over a group: of all instances and parameters below it, blocks looked through.
 * @param grp a tree's top group as a rule, or a catalog root. Not changed.
 * @return a new catalog root in no list; the caller owns it. It shares the texts of the tree and is
 *     valid as long as the tree is; deleting it leaves the tree, and either may be deleted
 *     first. */
CF_API cfgroup *cfcatalog(cfgroup *grp);

/** Looks up an instance directly below a group of a catalog or of a plain tree, blocks looked
 * through.
 * @param gc owner, level or tree group. In a category level `cat` is not to be given.
 * @param cat,name NULL or empty: not given. `cat` alone: the category level, or NULL on a plain
 *     tree. `name` alone: an instance without category, or of any on a plain tree. Neither: the
 *     first instance, on a catalog that of the first level.
 * @return the first such instance or reference, borrowed; NULL if there is none. */
CF_API cfgroup *cfcatgetgrp(cfgroup *gc, const char *cat, const char *name);

/** Looks up a parameter directly below a group of a catalog or of a plain tree, blocks looked
 * through.
 * @param gc owner, level or tree group.
 * @param key NULL or empty: any.
 * @param val NULL: any. Of the blocks of one key in a plain tree only the first is looked into; and
 *     without `key`, of all blocks or levels.
 * @return the first such parameter or reference, borrowed; NULL if there is none. */
CF_API cfparam *cfcatgetpar(cfgroup *gc, const char *key, const char *val);

/** Adds a group, with all below it, behind what is there. It goes to the end of the tree's group
 * that `gc` stands for, and each catalog on the way files it.
 * @param gc owner, or a category or name level, which leads to its owner. A value level or a group
 *     of a plain tree gets `elem` linked as by ::cfaddgrp.
 * @param elem leaves the list that it is in. Should the manager leave by an exception, it is in no
 *     list, nothing is filed, and the caller owns it still.
 * @return the new reference of this catalog, or the owner if `elem` is no instance, whose contents
 *     are filed; `elem` if it was plainly linked. */
CF_API cfgroup *cfcataddgrp(cfgroup *gc, cfgroup *elem);

/** Adds a parameter, as ::cfcataddgrp does a group.
 * @param gc owner, or a value level, which leads to its owner. Another level or a group of a plain
 *     tree gets `elem` linked as by ::cfaddpar.
 * @return the new reference of this catalog; `elem` if it was plainly linked. */
CF_API cfparam *cfcataddpar(cfgroup *gc, cfparam *elem);

/** Puts an element in the place of another, in the tree and in each catalog on the way: the old
 * element at the end of the references is deleted, `nd` takes its place, and the references stay
 * where they are and show `nd`. What is below a reference is filed anew. Levels stay as they are,
 * whatever the texts of `nd`. A remark bound to the old element is bound to the new one.
 * @param cnd reference, level or tree element. If it is in no list, `nd` ends in no list too.
 * @param nd of the same kind as a `cnd` that is a reference. It leaves the list that it is in. If
 *     it is the target already, references and catalogs are brought up to date and nothing is
 *     deleted: so the call is repeated should the manager have left by an exception, for that
 *     leaves `nd` in place, but not all below it filed.
 * @return `cnd` if it is a reference, else `nd`. NULL if the kinds differ, and then nothing is
 *     changed. Pointers to what was below a reference are dead. */
CF_API cfnode *cfcatxcgnd(cfnode *cnd, cfnode *nd);

/** Replaces the first instance of `elem`'s category and name, as ::cfcatxcgnd does, or adds `elem`,
 * as ::cfcataddgrp does, if there is none. An `elem` with an empty name is always added.
 * @return what those return. */
CF_API cfgroup *cfcatsetgrp(cfgroup *gc, cfgroup *elem);

/** Replaces the first parameter of `elem`'s key, as ::cfcatxcgnd does, or adds `elem`, as
 * ::cfcataddpar does, if there is none. An `elem` with an empty key is always added. The value is
 * to be evaluated anew, through the reference.
 * @return what those return. */
CF_API cfparam *cfcatsetpar(cfgroup *gc, cfparam *elem);

/** Deletes an element with all below it, the targets of all references met, and the blocks that
 * bound remarks to them. A level takes all that is filed in it along, a catalog root the whole
 * tree, a remark the whole run. Levels that run empty stay.
 * @param cnd reference, level or tree element. NULL and an anchor: nothing happens. */
CF_API void cfcatdelnd(cfnode *cnd);

/** Deletes what is below a group as ::cfcatdelnd does each child; the group and its targets stay,
 * free remarks in the target too. A block is cleared and stays.
 * @param cgrp NULL gives NULL.
 * @return `cgrp`. */
CF_API cfgroup *cfcatclrgrp(cfgroup *cgrp);

/** ::cfcatdelnd for a group. @param celem NULL: nothing happens. */
CF_API void cfcatdelgrp(cfgroup *celem);
/** ::cfcatdelnd for a parameter. @param celem NULL: nothing happens. */
CF_API void cfcatdelpar(cfparam *celem);

/** @} */

/** @defgroup cf_platform Messages
 * Defined by the library, and each displaced alone by a definition of the application's own.
 * @{ */

/** Takes an error message: a format without line end, and its arguments, as printf(). The default
 * writes one line to standard error. Returns, and the library goes on. */
CF_API CF_FORMAT void emsg(const char *fmt, ...);

/** Takes a warning, as ::emsg takes an error. */
CF_API CF_FORMAT void wmsg(const char *fmt, ...);

/** Takes the message of a fatal fault, "out of memory" being the only one, and does not return. The
 * default writes it to standard error and aborts. */
CF_API void fail(const char *msg);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
