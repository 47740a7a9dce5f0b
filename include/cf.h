/**
 * @file cf.h
 * @brief cf: hierarchical configuration files as trees of groups, parameters and remarks.
 *
 * SPDX-License-Identifier: MIT
 *
 * ::cflex reads a file into a tree. ::cfparse checks the tree against the symbols of the
 * application and evaluates its parameters. ::cfcatalog makes a catalog of the tree. Lookups find
 * elements, and getters read their values. The cfcat operations edit tree and catalog together.
 * ::cfprint writes the tree back with its remarks and blank lines. ::cfdelgrp releases it.
 *
 * These rules hold everywhere:
 *
 * - A *text* is a zero-terminated string that the library does not modify. The texts of an element
 *   are never NULL; an absent text is the empty text.
 * - A group owns the elements in it. An element in no group belongs to the caller. Constructors
 *   copy the texts that they are given.
 * - A pointer argument must not be NULL unless its description says what NULL does.
 * - No operation reports through errno. Messages of reading, checking and printing go to ::emsg and
 *   ::wmsg. Exhausted memory goes to ::fail. All other outcomes are results.
 * - Stack use is constant, except for one frame for each step along a chain of references, as in
 *   catalogs over catalogs.
 * - A *slot* is a function pointer in the record of an operation; NULL means the default. Replacing
 *   a slot while the operation runs may have no effect.
 * - A tree and all catalogs over it may be used by one thread at a time. Operations that only read
 *   may run in several threads at once while no thread writes. The memory manager is the only state
 *   that trees share.
 * - The memory manager, and every function that an application supplies, may throw a C++ exception
 *   or call longjmp(). The tree then remains complete: it can be read, edited and deleted. An
 *   exception leaks nothing; longjmp() leaks at most what the interrupted call had not linked yet.
 * - Two texts are *equal* when strcasecmp() gives 0: case is ignored, and the locale of the process
 *   decides which bytes are the two cases of a letter.
 */
#ifndef CF_H
#define CF_H

#include <stddef.h>
#include <stdio.h>

/** @name Version
 * The only place that holds the version; the build reads it from here.
 *
 * Raise PATCH for a change that only fixes bugs, MINOR when names are added, and MAJOR when a name
 * is removed, or when the layout of a record, a type or a promise of this header changes. The
 * soname follows MAJOR. The names that a MINOR version adds have a node of their own in the symbol
 * map.
 * @{ */
#define CF_VERSION_MAJOR 0 /**< Raised when existing callers must change or recompile. */
#define CF_VERSION_MINOR 2 /**< Raised when names are added. */
#define CF_VERSION_PATCH 0 /**< Raised when bugs are fixed. */
/** @} */

/** @cond marks */
#if defined(__GNUC__)
#define CF_API __attribute__((visibility("default")))
#define CF_FORMAT __attribute__((format(printf, 1, 2)))
#else
#define CF_API
#define CF_FORMAT
#endif
/* These enclose a function that has the same name as a record, of which -Wshadow would warn. */
#if defined(__GNUC__) && defined(__cplusplus)
#define CF_SAME_NAME _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wshadow\"")
#define CF_SAME_NAME_END _Pragma("GCC diagnostic pop")
#else
#define CF_SAME_NAME
#define CF_SAME_NAME_END
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
  cf_anchor = 0, /**< List head inside a group. It is no element; every list ends on it. */
  cf_group = 1,  /**< `link` of a ::cfgroup. */
  cf_remark = 2, /**< `link` of a ::cfremark. */
  cf_param = 3   /**< `link` of a ::cfparam. */
} cfnode_t;

/** Kind of a group. Only an instance (::cf_grpinst) is a group of the configuration. Printer,
 * check, comparison, catalog and scope strings treat the children of every other kind of group as
 * if they were in its parent. */
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

/** An evaluator converts the text of a parameter into a typed value. It is called in three ways:
 *
 * | `val` | `vval`  | task                         | result                                      |
 * |-------|---------|------------------------------|---------------------------------------------|
 * | NULL  | NULL    | Say how large a value is.    | > 0: size in bytes; 0: the text is the      |
 * |       |         |                              | value; < 0: the size depends on the text    |
 * | text  | NULL    | Check the text.              | >= 0: valid, size as above; < 0: not valid  |
 * | text  | storage | Convert it into the storage. | >= 0: done; < 0: not valid                  |
 *
 * The storage has at least the size that the evaluator returned, and is aligned as by malloc();
 * where pointers have 32 bits, perhaps to 8 bytes only. An evaluator may refuse a text after it has
 * written to the storage. */
typedef int (*cfeval_t)(const char *val, void *vval);

/** The link record: the first field of every element, and the anchor inside every group.
 *
 * The children of a group form a ring through its anchor: `elem.next` is the first child,
 * `elem.prev` the last. The anchor of an empty group points at itself. */
struct cfnode {
  cfnode *prev;   /**< Previous node of the ring; NULL on a node that is in no list. */
  cfnode *next;   /**< Next node of the ring; NULL on a node that is in no list. */
  cfgroup *group; /**< Element: the group that holds it, or NULL. Anchor: its owner, or NULL. */
  cfnode *ref;    /**< Reference: the `link` of its target. NULL on every other node. */
  cfnode_t type;  /**< Kind of the node. */
};

/** A group. It is one allocation: the record, then `cat`, then `name`. A reference is the record
 * alone and shares the texts of its target. */
struct cfgroup {
  cfnode link;      /**< Its place in its parent's list; `link.type` is ::cf_group. */
  long row;         /**< Line number from 1; negative: no line of a file. */
  const char *cat;  /**< Category; may be empty. */
  const char *name; /**< Name; may be empty. */
  cfgroup_t type;   /**< Kind of the group. */
  cfnode elem;      /**< Anchor of its children; `elem.group` is this group. */
};

/** A remark: one line of comment text. It is one allocation: the record, then `txt`. */
struct cfremark {
  cfnode link;     /**< Its place in its group's list; `link.type` is ::cf_remark. */
  long row;        /**< Line number from 1; negative: no line of a file. */
  const char *txt; /**< Text after the mark; may be empty. */
};

/** A parameter. It is one allocation: the record, a value buffer of 16 bytes, then `key`, then
 * `val`. A reference is the record alone; it shares the texts of its target and copies `eval` and
 * `vval`. */
struct cfparam {
  cfnode link;      /**< Its place in its group's list; `link.type` is ::cf_param. */
  long row;         /**< Line number from 1; negative: no line of a file. */
  const char *key;  /**< Key; may be empty. */
  const char *val;  /**< Value as text; may be empty. */
  cfeval_t eval;    /**< The evaluator that made `vval`; NULL while not evaluated. */
  const void *vval; /**< Evaluated value, NULL while not evaluated: `val` itself (size 0), the value
                       buffer (size 1 to 16) or a block of the manager that the parameter owns. */
};

/** The memory manager, which makes every allocation and release of the library. */
struct cfmmgr {
  /** Returns a block of at least `size` bytes, aligned as by malloc(). Its result is not tested, so
   * it must return a usable block or not return at all. The default calls ::fail if malloc()
   * returns NULL. */
  void *(*cfmalloc)(size_t size);
  /** Releases a block that `cfmalloc` returned. If it throws an exception, the block counts as
   * released. The default is free(). */
  void (*cffree)(void *block);
};

/** Installs a memory manager for the whole process, from the next allocation or release on. The new
 * manager also releases the blocks that the former one made, as no element records its manager. No
 * other thread may use the library during this call. Threads with separate trees call the functions
 * of the manager at the same time.
 * @param mmgr copied; NULL changes nothing.
 * @return the manager before the call. */
CF_SAME_NAME
CF_API struct cfmmgr cfmmgr(const struct cfmmgr *mmgr);
CF_SAME_NAME_END

/** Initialises a node: `type` as given, `group` = `pgrp`, `ref` = NULL. An anchor becomes an empty
 * ring; any other node is in no list.
 * @param pgrp NULL for an element, or for an anchor that belongs to no group.
 * @return `nd`. */
CF_API cfnode *cfinitnd(cfnode *nd, cfnode_t type, cfgroup *pgrp);

/** Initialises a node as a reference to `ref`, with the same type.
 * @param pgrp as in ::cfinitnd.
 * @return `nd`. */
CF_API cfnode *cfinitrefnd(cfnode *nd, cfnode *ref, cfgroup *pgrp);

/** Takes an element out of its list; then the caller owns it. Its `prev`, `next` and `group` become
 * NULL, so that it can be linked, deleted or taken out again at any time, whatever happens to its
 * former neighbours.
 * @param nd not an anchor. An element in no list does not change.
 * @return `nd`. */
CF_API cfnode *cfunlknd(cfnode *nd);

/** Moves an element from the list that it is in to the end of a group, which then owns it.
 * @param nd not an anchor.
 * @return `grp`.
 * @warning No link operation detects that a group is linked into itself or into a group below it.
 */
CF_API cfgroup *cflinknd(cfgroup *grp, cfnode *nd);

/** Moves an element directly before another, into the same group.
 * @param it an element or an anchor; before an anchor, `nd` is the last element. If `it` is in no
 *     list, `nd` is in no list afterwards.
 * @param nd not `it`, and not an anchor.
 * @return `it`. */
CF_API cfnode *cfchainnd(cfnode *it, cfnode *nd);

/** Replaces an element by another. This is no swap: `nd` leaves the list that it was in.
 * @param it the element that is replaced; not an anchor. If it is in no list, `nd` is in no list
 *     afterwards.
 * @param nd not `it`, and not an anchor.
 * @return `it`, now in no list, with its children and its value. The caller owns it. */
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
 * @param row line number from 1; negative: no line of a file.
 * @return a new group that the caller owns until it is linked. */
CF_API cfgroup *cfnewgrp(const char *cat, const char *name, cfgroup_t type, long row);

/** Makes a remark in no list.
 * @param txt copied; NULL means the empty text.
 * @param row as in ::cfnewgrp.
 * @return a new remark that the caller owns until it is linked. */
CF_API cfremark *cfnewrem(const char *txt, long row);

/** Makes a parameter in no list, not evaluated.
 * @param key,val copied; NULL means the empty text.
 * @param row as in ::cfnewgrp.
 * @return a new parameter that the caller owns until it is linked. */
CF_API cfparam *cfnewpar(const char *key, const char *val, long row);

/** Makes a reference to a group, with the target's `type`, `row`, `cat` and `name`, but without
 * children.
 * @return a new reference that the caller owns until it is linked. It shares the target's texts and
 *     is valid only as long as the target. It does not follow later changes of the target. */
CF_API cfgroup *cfnewrefgrp(cfgroup *grp);

/** Makes a reference to a parameter, with the target's `row`, `key`, `val`, `eval` and `vval`.
 * @return as ::cfnewrefgrp. It shares the target's value, too. */
CF_API cfparam *cfnewrefpar(cfparam *par);

/** Takes an element of any kind out of its list and deletes it with all it holds: the last child
 * first, and children before their group. The target of a reference is neither deleted nor read.
 * @param nd NULL or an anchor: nothing happens.
 * @warning References to a deleted element are not detected. If there is a catalog, delete through
 *     it. */
CF_API void cfdelnd(cfnode *nd);

/** ::cfdelnd for a group. @param elem NULL: nothing happens. */
CF_API void cfdelgrp(cfgroup *elem);
/** ::cfdelnd for a remark. @param elem NULL: nothing happens. */
CF_API void cfdelrem(cfremark *elem);
/** ::cfdelnd for a parameter. If its value is a block of its own, that is released first. A
 * reference does not release the value, which belongs to its target.
 * @param elem NULL: nothing happens. */
CF_API void cfdelpar(cfparam *elem);

/** Deletes all children of a group, the last first. The group itself stays where it is.
 * @param grp NULL gives NULL.
 * @return `grp`. */
CF_API cfgroup *cfclrgrp(cfgroup *grp);

/** Copies an element of any kind with all it holds.
 * @return a new element in no list that the caller owns; NULL for NULL and for an anchor. */
CF_API cfnode *cfdupnd(const cfnode *nd);

/** Copies a group with all it holds. Kinds, texts, rows and the order of children are the same.
 *
 * A reference is copied together with its target: the copy refers to a copy of the target. This
 * also applies to each reference inside the group. The copies of targets are in no list, and the
 * caller owns them too; ::cfcatdelgrp on the result deletes everything.
 * @return a new group in no list that the caller owns; NULL for NULL. */
CF_API cfgroup *cfdupgrp(const cfgroup *grp);

/** Copies a remark.
 * @return a new remark in no list that the caller owns; NULL for NULL. */
CF_API cfremark *cfduprem(const cfremark *rem);

/** Copies a parameter. The copy of an evaluated parameter is evaluated anew with the same
 * evaluator; if the evaluator refuses, the copy is not evaluated. A reference is copied together
 * with its target, as in ::cfdupgrp.
 * @return a new parameter in no list that the caller owns; NULL for NULL. */
CF_API cfparam *cfduppar(const cfparam *par);

/** @return the first child of a group, or its anchor if it has none; never NULL. */
CF_API cfnode *cfiterator(cfgroup *grp);

/** Moves an iterator to the next node of its list. On the anchor it stays. To delete an element
 * while iterating, move the iterator first.
 * @return the new position, which may be the anchor. */
CF_API cfnode *cfnext(cfnode **it);

/** @return the kind of a node. */
CF_API cfnode_t cftype(const cfnode *it);
/** @return 1 if the node is an anchor, which is the end of a list, else 0. */
CF_API int cfend(const cfnode *it);
/** @return 1 if the group has no child, else 0. */
CF_API int cfempty(const cfgroup *grp);
/** @return the node as a group; NULL if it is NULL or something else. */
CF_API cfgroup *cfgrp(cfnode *nd);
/** @return the node as a remark; NULL if it is NULL or something else. */
CF_API cfremark *cfrem(cfnode *nd);
/** @return the node as a parameter; NULL if it is NULL or something else. */
CF_API cfparam *cfpar(cfnode *nd);

/** Searches a list for a group of kind ::cf_grpcat, ::cf_grpgrp or ::cf_grpinst with texts equal to
 * those given.
 * @param it the first node to test. The search stays in its list.
 * @param cat,name NULL or empty: any.
 * @return the first hit, or the list's anchor (see ::cfend); never NULL. */
CF_API cfnode *cfseekgrp(cfnode *it, const char *cat, const char *name);

/** Searches a list for a remark or a block of remarks (::cf_grprem).
 * @param it as in ::cfseekgrp.
 * @return the first hit, or the list's anchor; never NULL. */
CF_API cfnode *cfseekrem(cfnode *it);

/** Searches a list for a parameter with texts equal to those given. If `val` is NULL, a group of
 * kind ::cf_grpval or ::cf_grppar whose `name` equals `key` is a hit, too.
 * @param it as in ::cfseekgrp.
 * @param key NULL or empty: any.
 * @param val NULL: any. The empty text matches an empty value only.
 * @return the first hit, a parameter or a group (see ::cftype), or the list's anchor; never NULL.
 */
CF_API cfnode *cfseekpar(cfnode *it, const char *key, const char *val);

/** @} */

/** @defgroup cf_value Values
 * Evaluators, evaluation and the typed getters.
 * @{ */

/** Evaluator of "true" and "false"; case is ignored. The value is a `char`, 1 or 0. */
CF_API int cfevbool(const char *val, void *vval);

/** Evaluator of integers, which strtol() with base 0 reads: with leading white space, a sign, and
 * the prefixes 0x and 0. No other character may follow. A number out of range gives LONG_MIN or
 * LONG_MAX. The value is a `long`. */
CF_API int cfevint(const char *val, void *vval);

/** As ::cfevint, with strtoll(). The value is a `long long`; one out of range gives LLONG_MIN or
 * LLONG_MAX. */
CF_API int cfevintx(const char *val, void *vval);

/** Evaluator of floating point numbers, which strtod() reads, with hexadecimal, infinite and NaN
 * forms. No other character may follow. The value is a `double`; one out of range is an infinity or
 * close to 0.
 * @warning strtod() expects the decimal point of the process's locale. Where that is a comma, "1.5"
 *     is refused and "1,5" is read. A program that calls setlocale() can keep LC_NUMERIC at "C", or
 *     supply its own evaluator. */
CF_API int cfevflt(const char *val, void *vval);

/** Evaluator of texts. Every text is valid, and the value is the text itself. */
CF_API int cfevstr(const char *val, void *vval);

/** Evaluates a parameter. If `eval` made the present value, `eval` is not called again. The value
 * is valid until the next successful evaluation with another evaluator, ::cfunevalpar, or deletion.
 * For a reference, the target is evaluated and the reference copies the result.
 * @param eval not NULL.
 * @return 1 if the parameter has the value of `eval`; 0 if `eval` refused. After a refusal the
 *     parameter is unchanged and keeps its former value.
 * @warning Other references to the same target keep the former value, which may be released memory.
 *     Call this function on them before their next use. */
CF_API int cfevalpar(cfparam *par, cfeval_t eval);

/** Drops the value of a parameter. For a reference, the values of its targets are dropped, too.
 * @return `par`.
 * @warning Other references to the same target keep the value, as after ::cfevalpar. */
CF_API cfparam *cfunevalpar(cfparam *par);

/** @return the value, 1 or 0, of a parameter evaluated with ::cfevbool. Here and in the next
 *     three functions, the behaviour is undefined if another evaluator made the value, or if the
 *     parameter is not evaluated. */
CF_API char cfbool(const cfparam *par);
/** @return the value of a parameter evaluated with ::cfevint. */
CF_API long cfint(const cfparam *par);
/** @return the value of a parameter evaluated with ::cfevintx. */
CF_API long long cfintx(const cfparam *par);
/** @return the value of a parameter evaluated with ::cfevflt. */
CF_API double cfflt(const cfparam *par);
/** @return the text of the value as in the file, evaluated or not. Valid as long as `par`. */
CF_API const char *cfstr(const cfparam *par);
/** @return the evaluated value as a text, for evaluators whose value is a text, such as ::cfevstr;
 *     NULL while not evaluated. Valid as long as the value. */
CF_API const char *cfvstr(const cfparam *par);

/** @} */

/** @defgroup cf_text Reading and printing
 *
 * A file consists of lines of at most 4095 bytes, newline included. Each line is of one of these
 * kinds (W is optional white space; between `cat` and `name` some is required):
 *
 * | kind        | form                                   | becomes                               |
 * |-------------|----------------------------------------|---------------------------------------|
 * | empty       | `W`                                    | nothing                               |
 * | remark      | `W # anything`                         | ::cfremark, without # and one blank   |
 * | group begin | `W name W { W` or `W cat W name W { W` | ::cfgroup of kind ::cf_grpinst        |
 * | group end   | `W } W`                                | end of the innermost open group       |
 * | parameter   | `W key W = anything`                   | ::cfparam, its value without outer W  |
 *
 * `cat`, `name` and `key` are identifiers: a letter, then letters, digits and underscores. A zero
 * byte hides the rest of its line. The locale decides whether a byte of 0x80 or above is a letter
 * or white space; in the C locale and in UTF-8 locales it is neither, and may occur in values and
 * remarks only.
 * @{ */

typedef struct cflexer cflexer;
typedef struct cfprinter cfprinter;

/** The reader's record. Clear it, set the slots that replace a default, and call ::cflex.
 *
 * Every slot finds the current line in `row` and its number in `nrow`. The classifiers (`is`...)
 * return non-zero for yes, and are called in the order of the fields until one says yes. For a
 * remark, a group begin or a parameter, the scanner (`scan`...) then makes a new element, in no
 * list and with its `row` set; if it returns NULL, the line is reported as a syntax error. If the
 * mark of a default scanner (# { =) is not in the line, the scanner takes the end of the line for
 * the mark.
 */
struct cflexer {
  int (*isempty)(cflexer *lex);  /**< Is the line empty? */
  int (*isremark)(cflexer *lex); /**< Is it a remark? */
  int (*isgrpbeg)(cflexer *lex); /**< Does it begin a group? If so, and if a group is open, isgrpend
                                    is called too: yes means that the line also ends that group. */
  int (*isgrpend)(cflexer *lex); /**< Does it end a group? Also called at the end of the input, with
                                    NULL `row`, if a group is open: yes ends that group. */
  int (*isparam)(cflexer *lex);  /**< Is it a parameter? */
  cfremark *(*scanrem)(cflexer *lex); /**< Makes the remark of a line. */
  cfgroup *(*scangrp)(cflexer *lex);  /**< Makes the group of a line; of any kind. */
  cfparam *(*scanpar)(cflexer *lex);  /**< Makes the parameter of a line. */
  cfgroup *top;      /**< Root of the tree. The caller owns it, also after a failed read. */
  char valid;        /**< 1 until a fault is reported. A slot may clear it, which makes the
                        read fail without a message. */
  FILE *fd;          /**< Stream being read. */
  const char *fname; /**< File name for messages; borrowed. */
  const char *row;   /**< Current line, valid until the next is read; NULL at the end. */
  long nrow;         /**< Number of the current line, from 1. */
};

/** Stores the default into each slot that is NULL. No other field changes. ::cflex does this
 * itself.
 * @return `lex`. */
CF_API cflexer *cflexdfl(cflexer *lex);

/** Reads a stream from its position to its end into a new tree, in `lex->top`. Reading continues
 * after a fault, so that one run reports all of them. They go to ::emsg with `fname` and the line
 * number:
 *
 * - `%s:%ld: line overflow`: 4095 bytes without a newline. The line is dropped.
 * - `%s:%ld: syntax error`: the line is of no kind. It is dropped.
 * - `%s:%ld: group end without begin`: no group is open. The line is dropped.
 * - `%s:%ld: group begin without end`: the input ended in this group, the innermost one open.
 * - `%s:%ld: read error`: the stream failed.
 *
 * After a read without fault, each run of remarks on consecutive lines is in a block of kind
 * ::cf_grprem. If a group or parameter is on the next line, a block of kind ::cf_grpgrp or
 * ::cf_grppar binds the run to it. After a read with faults, remarks stay in their groups.
 * @param lex slots set or NULL. All other fields are overwritten.
 * @param fd opened and closed by the caller.
 * @param fname for messages only; borrowed.
 * @return 1 after a read without fault, else 0. The caller owns the tree in both cases.
 * @warning `lex->top` is overwritten, and a tree that it pointed at is not deleted. */
CF_API int cflex(cflexer *lex, FILE *fd, const char *fname);

/** The printer's record. Clear it, set the slots that replace a default, and call ::cfprint. A slot
 * writes to `fd` and returns a negative number on failure, any other number on success. */
struct cfprinter {
  int (*outempty)(cfprinter *prn, cfgroup *grp);   /**< A blank line, indented as in `grp`. */
  int (*outremark)(cfprinter *prn, cfremark *rem); /**< A remark line. */
  int (*outgrpbeg)(cfprinter *prn, cfgroup *grp);  /**< The head line of a group. */
  int (*outgrpend)(cfprinter *prn, cfgroup *grp);  /**< The end line of a group. */
  int (*outparam)(cfprinter *prn, cfparam *par);   /**< A parameter line. */
  char valid;                                      /**< 1 until a failure. A slot may clear it. */
  cfgroup *top;                                    /**< The group being printed. */
  FILE *fd;                                        /**< Stream being written. */
  const char *fname;                               /**< File name for the message; borrowed. */
  int brk; /**< Kinds of node before which a blank line is written, as bits 1 << kind. */
};

/** Stores the default into each slot that is NULL. No other field changes. ::cfprint does this
 * itself.
 * @return `prn`. */
CF_API cfprinter *cfprintdfl(cfprinter *prn);

/** Writes a group and all below it as text, with two blanks of indentation for each open group.
 * Blank lines separate free remarks from the next element, so that a tree from ::cflex prints to a
 * text that reads back as the same tree. A catalog prints without remarks, in the order of the
 * catalog.
 *
 * A failed write stops the printing, and the message `%s: write error` with `fname` goes to ::emsg
 * once. The stream is neither flushed nor closed: the caller must test for errors that only a flush
 * shows.
 * @param prn slots set or NULL. All other fields are overwritten.
 * @param top any group. One inside a tree keeps its indentation.
 * @param fname for the message only; borrowed.
 * @return 1 if everything was written, else 0.
 * @warning Texts are written as they are. A text that cannot come from a file does not read back as
 *     it was, and a printed line can be longer than the reader's limit. If nothing may be lost,
 *     read the output back and compare. */
CF_API int cfprint(FILE *fd, cfprinter *prn, cfgroup *top, const char *fname);

/** @} */

/** @defgroup cf_scope Checking and comparing
 *
 * A *scope string* names an element to the application, by its place in the application's schema.
 *
 * | element                 | scope string                               | example              |
 * |-------------------------|--------------------------------------------|----------------------|
 * | parameter in the top    | `::` key                                   | "::verbose"          |
 * | parameter in host alpha | category `::` key                          | "host::addr"         |
 * | parameter in net        | path of the group, key                     | "::net.port"         |
 * | group host alpha in net | path of its parent, name `.` category `::` | "::net.alpha.host::" |
 * | group net               | path of its parent, name `.`               | "::net."             |
 *
 * The *path* of a group is `::` for the top group, category `::` for a group with a category, and
 * the path of its parent, name `.` for any other. So a path begins at the nearest group with a
 * category, wherever that group is.
 * @{ */

typedef struct cfscope cfscope;
typedef struct cfparser cfparser;
typedef struct cfdiff cfdiff;

/** One definition of the application's table of symbols. */
struct cfscope {
  const char *scope; /**< Its scope string, for the application's own search. Never read here. */
  cfeval_t eval;     /**< Evaluator for parameters; NULL for none. Not used for groups. */
  unsigned int multi : 1; /**< 1: may occur any number of times in one instance; 0: once. */
};

/** The record of a check. */
struct cfparser {
  /** Writes the scope string of an element. With NULL `scbf` it returns the size in bytes,
   * terminator included. With a buffer of that size, filled with zeros, it writes the text. It must
   * not change `nd`. */
  unsigned int (*genscope)(char *scbf, cfnode *nd);
  /** Returns the definition of a scope string, or NULL if there is none. The text is valid during
   * the call only. The application owns the definition, which is read once after the call: each
   * call may return the same record with new contents. The function must not change the links of
   * the tree. */
  cfscope *(*scopedef)(const char *scope);
  char werr;         /**< Non-zero: an undefined symbol is an error; 0: a warning. */
  char valid;        /**< 1 until an error is reported. */
  cfgroup *top;      /**< The group of the last check. */
  const char *fname; /**< File name for messages; borrowed. */
};

/** Stores the default into each slot that is NULL. No other field changes. The defaults make scope
 * strings as described above, and define no symbol. ::cfparse does this itself.
 * @return `parser`. */
CF_API cfparser *cfparsedfl(cfparser *parser);

/** Checks all parameters and instances of a tree or catalog against the application's definitions,
 * children before their group, and evaluates the parameters. The check continues after an error.
 *
 * A message has `fname` and the line number, or `fname` and the scope string if `row` is negative:
 *
 * - `%s:%ld: undefined symbol` or `%s/%s: undefined symbol`: there is no definition. This message
 *   goes to ::emsg if `werr` is set, else to ::wmsg. All others go to ::emsg.
 * - `%s:%ld: value expression error` or `%s/%s: value expression error`: the evaluator refused.
 * - `%s:%ld: duplicate symbol` or `%s/%s: duplicate symbol`: the definition is not `multi`, and an
 *   element of the same kind with the same texts comes before it in the same instance: a parameter
 *   with the same key, or a group with the same category and name. An empty name or key equals only
 *   another empty one.
 *
 * @param parser `werr` and slots set. All other fields are overwritten.
 * @param fname for messages only; borrowed.
 * @return 1 if no error was reported, else 0. Values stay in the tree in both cases.
 * @warning In a plain tree, a group without category is also a duplicate of a group before it that
 *     has the same name and any category. */
CF_API int cfparse(cfparser *parser, cfgroup *top, const char *fname);

/** Options of a comparison, bits of `opt`. */
enum {
  cf_diffrem = 1, /**< Remarks are compared too. */
  cf_diffref = 2  /**< The targets of references are compared too. */
};

/** The record of a comparison. */
struct cfdiff {
  unsigned int (*genscope)(char *scbf, cfnode *nd); /**< As in ::cfparser. */
  /** Says whether the parameter or instance with this scope string is compared. 0 excludes it with
   * all below it. The text is valid during the call only. */
  int (*chkscope)(const char *scope);
  unsigned int opt; /**< ::cf_diffrem, ::cf_diffref. */
  char diff;        /**< Result of the last comparison. */
};

/** Stores the default into each slot that is NULL. No other field changes. The defaults make scope
 * strings as described above, and exclude no element. ::cfdiffnd does not do this itself.
 * @return `diff`. */
CF_API cfdiff *cfdiffdfl(cfdiff *diff);

/** Compares two elements with all below them: instances, parameters and, as an option, remarks, in
 * their order. Line numbers, blank lines and blocks are ignored, and so is case, except in remarks.
 * The end of a group is ignored as well: a parameter after a group equals the same parameter at the
 * end of that group.
 * @param diff slots filled by ::cfdiffdfl. Only the field `diff` is written.
 * @param nd1,nd2 not anchors. NULL equals only NULL.
 * @return 1 if they differ, 0 if they are the same. `diff->diff` has the same value. */
CF_API int cfdiffnd(cfdiff *diff, const cfnode *nd1, const cfnode *nd2);

/** @} */

/** @defgroup cf_catalog Catalog
 *
 * A catalog is a second tree, over a tree or over another catalog. It holds a reference to each
 * instance and parameter, sorted by category, name and key:
 *
 * - An *owner* is the catalog root or a reference to an instance. It holds category levels, name
 *   levels for instances without category, and value levels, in the order of first appearance.
 * - A category level holds name levels. A name level holds references to instances, and a value
 *   level references to parameters, in the order of the tree.
 *
 * To *file* an element is to put a reference to it into its level, and to make the level if it is
 * missing. An edit through a catalog changes that catalog, the catalogs under it and the tree in
 * one call. Other catalogs over the tree do not change. Given a node of a plain tree, the
 * operations edit that tree alone.
 * @{ */

/** Makes a catalog of all instances and parameters below a group. An element in a block is filed as
 * if it were in the parent of the block.
 * @param grp usually the top group of a tree, or a catalog root. It is not changed.
 * @return a new catalog root in no list; the caller owns it. It shares the texts of the tree and is
 *     valid as long as the tree. ::cfdelgrp deletes it without the tree, before or after the tree.
 */
CF_API cfgroup *cfcatalog(cfgroup *grp);

/** Looks up an instance in a group of a catalog or of a plain tree, and in the blocks of that
 * group. NULL and the empty text mean that `cat` or `name` is not given:
 *
 * - `cat` and `name`: the first instance with both.
 * - `cat` alone: in a catalog, the category level; in a plain tree, NULL.
 * - `name` alone: in a catalog, the first instance with that name and no category; in a plain tree,
 *   the first with that name and any category.
 * - neither: the first instance; in a catalog, that of the first level.
 *
 * @param gc owner, level, or group of a tree.
 * @param cat,name as above. In a category level, nothing is found with a `cat`.
 * @return the reference or instance, borrowed; NULL if there is none. */
CF_API cfgroup *cfcatgetgrp(cfgroup *gc, const char *cat, const char *name);

/** Looks up a parameter in a group of a catalog or of a plain tree, and in its levels or blocks.
 * @param gc owner, level, or group of a tree.
 * @param key NULL or empty: any.
 * @param val NULL: any. If it is given, the parameters directly in the group are searched first,
 *     and then a single level or block: the first one with the key, or without `key` the first of
 *     all.
 * @return the first such reference or parameter, borrowed; NULL if there is none. */
CF_API cfparam *cfcatgetpar(cfgroup *gc, const char *key, const char *val);

/** Adds a group with all below it. It becomes the last element of the tree's group that `gc` refers
 * to, and each catalog from `gc` down to the tree files it.
 * @param gc an owner; a category or name level is taken as its owner. To a value level or
 *     a group of a plain tree, `elem` is linked as by ::cfaddgrp.
 * @param elem taken out of the list that it is in. If the manager throws, `elem` is in no list,
 *     nothing is filed, and the caller still owns it.
 * @return the new reference in this catalog. If `elem` is no instance, the elements in it are
 *     filed, and the result is the owner. If `elem` was only linked, the result is `elem`. */
CF_API cfgroup *cfcataddgrp(cfgroup *gc, cfgroup *elem);

/** Adds a parameter, as ::cfcataddgrp adds a group.
 * @param gc an owner; a value level is taken as its owner. To another level or a group of
 *     a plain tree, `elem` is linked as by ::cfaddpar.
 * @param elem as in ::cfcataddgrp.
 * @return the new reference in this catalog; `elem` if it was only linked. */
CF_API cfparam *cfcataddpar(cfgroup *gc, cfparam *elem);

/** Replaces an element by another, in the tree and in each catalog from `cnd` down to the tree. The
 * old element at the end of the chain of references is deleted, and `nd` takes its place. The
 * references stay where they are and refer to `nd`; what is below them is filed anew. Levels do not
 * change, whatever texts `nd` has. A remark that was bound to the old element is bound to the new
 * one.
 * @param cnd reference, level or element of a tree. If it is in no list, `nd` is in no list
 *     afterwards.
 * @param nd of the same kind as `cnd` if that is a reference. It is taken out of the list that it
 *     is in. If it is the target already, references and catalogs are brought up to date, and
 *     nothing is deleted. So the call can be repeated if the manager throws: then `nd` is in place,
 *     but not all below it is filed.
 * @return `cnd` if it is a reference, else `nd`. NULL if the kinds differ; then nothing changes.
 *     Pointers to what was below a reference become invalid. */
CF_API cfnode *cfcatxcgnd(cfnode *cnd, cfnode *nd);

/** Replaces the first instance that ::cfcatgetgrp finds by the category and name of `elem`, as
 * ::cfcatxcgnd does. If there is none, adds `elem`, as ::cfcataddgrp does. An `elem` with an empty
 * name is always added.
 * @return the result of that function.
 * @warning In a plain tree, an `elem` without category replaces, and so deletes, the first instance
 *     of its name, whatever the category of that instance. */
CF_API cfgroup *cfcatsetgrp(cfgroup *gc, cfgroup *elem);

/** Replaces the first parameter with the key of `elem`, as ::cfcatxcgnd does. If there is none,
 * adds `elem`, as ::cfcataddpar does. An `elem` with an empty key is always added. Evaluate the
 * result before its value is used.
 * @return the result of that function. */
CF_API cfparam *cfcatsetpar(cfgroup *gc, cfparam *elem);

/** Deletes an element with all below it, with the targets of all these references, and with the
 * blocks that bound remarks to them. So a level is deleted with everything filed in it, a catalog
 * root with the whole tree, and a remark with its whole run. Levels that become empty are kept.
 * @param cnd reference, level or element of a tree. NULL or an anchor: nothing happens. */
CF_API void cfcatdelnd(cfnode *cnd);

/** Deletes each child of a group as ::cfcatdelnd does. The group itself is kept, even if it is a
 * block, and so are its targets and the free remarks in them.
 * @param cgrp NULL gives NULL.
 * @return `cgrp`. */
CF_API cfgroup *cfcatclrgrp(cfgroup *cgrp);

/** ::cfcatdelnd for a group. @param celem NULL: nothing happens. */
CF_API void cfcatdelgrp(cfgroup *celem);
/** ::cfcatdelnd for a parameter. @param celem NULL: nothing happens. */
CF_API void cfcatdelpar(cfparam *celem);

/** @} */

/** @defgroup cf_platform Messages
 * Every message goes to one of three functions. A thread can replace them for itself with ::cfmsgs.
 * Without a replacement, the ::emsg, ::wmsg and ::fail of the process are called. An application
 * may define each of these three itself; then its definition replaces the library's.
 * @{ */

/** Replacements of the three message functions for one thread. For a NULL member, the function of
 * the process is called. Each of them may throw an exception or call longjmp(). */
struct cfmsgs {
  CF_FORMAT void (*emsg)(const char *fmt, ...); /**< Replaces ::emsg. */
  CF_FORMAT void (*wmsg)(const char *fmt, ...); /**< Replaces ::wmsg. */
  void (*fail)(const char *msg);                /**< Replaces ::fail. Must not return. */
};

/** Installs replacements of the message functions for the calling thread, from the next message on.
 * @param msgs copied; NULL changes nothing.
 * @return the replacements before the call; all members are NULL if there were none. */
CF_SAME_NAME
CF_API struct cfmsgs cfmsgs(const struct cfmsgs *msgs);
CF_SAME_NAME_END

#ifdef CF_DOXYGEN
/** Define this macro before including the header to leave ::emsg, ::wmsg and ::fail undeclared. It
 * is for a program that uses one of these names for a function of its own with another purpose.
 *
 * @warning In C such a function must be static: an external one replaces the library's function of
 *     that name, declared or not. In C++ it may also be external, unless it is declared `extern
 *     "C"`. */
#define CF_NO_MESSAGES
#endif

/** @} */

#ifdef __cplusplus
}
#endif

#endif

/* Outside the guard above: a program that includes this header through another one, which defines
 * CF_NO_MESSAGES, gets these by including it once more. */
#if defined(CF_DOXYGEN) || (!defined(CF_NO_MESSAGES) && !defined(CF_MESSAGES))
/** @cond marks */
#define CF_MESSAGES
/** @endcond */

#ifdef __cplusplus
extern "C" {
#endif

/** @addtogroup cf_platform
 * @{ */

/** Receives an error message: a format without newline, and its arguments, as for printf(). The
 * default writes one line to standard error. The library continues after it returns. */
CF_API CF_FORMAT void emsg(const char *fmt, ...);

/** Receives a warning, as ::emsg receives an error. */
CF_API CF_FORMAT void wmsg(const char *fmt, ...);

/** Receives the message of a fatal fault and must not return. "out of memory" is the only such
 * message. The default writes it to standard error and aborts the process.
 * @warning After a definition that returns, the library writes through a NULL pointer. */
CF_API void fail(const char *msg);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
