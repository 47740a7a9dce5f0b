// Evaluation: setting and dropping the value of a parameter, through references too.
// SPDX-License-Identifier: MIT
#include "node/link.h"
#include "node/memory.h"
#include "node/value_buffer.h"

#include <cassert>
#include <cstring>

using namespace cfcore;

namespace {

/// An attempt to evaluate a parameter into new storage. Unless the evaluator accepts the text, the
/// parameter is unchanged afterwards, even if the evaluator overwrote the value buffer or threw.
class attempt {
public:
  attempt(cfparam *subject, size_t size)
      : par(subject), overwrites(par->vval == value_buffer(par)),
        storage(size <= value_buffer_size ? value_buffer(par) : allocate(size)) {
    if (overwrites)
      std::memcpy(vvalcache, value_buffer(par), value_buffer_size);
  }
  ~attempt() {
    if (accepted)
      return;
    if (overwrites)
      std::memcpy(value_buffer(par), vvalcache, value_buffer_size);
    if (storage != value_buffer(par))
      release_quietly(storage);
  }
  attempt(const attempt &) = delete;
  attempt &operator=(const attempt &) = delete;

  bool run(cfeval_t eval) {
    if (eval(par->val, storage) < 0)
      return false;
    accepted = true;
    return true;
  }
  const void *value() const { return storage; }

private:
  cfparam *par;
  bool overwrites; // the former value is in the value buffer
  void *storage;
  bool accepted = false;
  unsigned char vvalcache[value_buffer_size] = {};
};

/// The block that holds the value of a plain parameter, or NULL. The caller replaces the value, and
/// releases the block when neither the parameter nor the references given point at it any more.
void *former_block(cfparam *par) {
  return owns_value(par) ? const_cast<void *>(par->vval) : nullptr;
}

/// Sets a value. Skips redundant stores, so that threads that evaluate the same parameter do not
/// race if its value is there already.
void setvalue(cfparam *par, cfeval_t eval, const void *vval) {
  if (par->eval == eval && par->vval == vval)
    return;
  par->eval = eval;
  par->vval = vval;
}

/// Evaluates a plain parameter that has no value of `eval` yet. Does not release its former value.
bool evaluate(cfparam *par, cfeval_t eval) {
  int size = eval(nullptr, nullptr);
  if (size < 0)
    size = eval(par->val, nullptr);
  if (size < 0)
    return false;
  if (size == 0) {
    setvalue(par, eval, par->val);
    return true;
  }
  attempt trial(par, static_cast<size_t>(size));
  if (!trial.run(eval))
    return false;
  setvalue(par, eval, trial.value());
  return true;
}

/// The plain parameter at the end of a chain of references.
cfparam *target(cfparam *par) {
  while (par->link.ref)
    par = aspar(par->link.ref);
  return par;
}

} // namespace

int cfevalpar(cfparam *par, cfeval_t eval) {
  assert(eval);
  cfparam *plain = target(par);
  void *block = nullptr;
  if (plain->eval != eval) {
    block = former_block(plain);
    if (!evaluate(plain, eval))
      return 0;
  }
  for (; par != plain; par = aspar(par->link.ref))
    setvalue(par, plain->eval, plain->vval);
  if (block)
    release(block);
  return 1;
}

cfparam *cfunevalpar(cfparam *par) {
  cfparam *plain = target(par);
  void *block = former_block(plain);
  for (cfparam *it = par; it != plain; it = aspar(it->link.ref))
    setvalue(it, nullptr, nullptr);
  setvalue(plain, nullptr, nullptr);
  if (block)
    release(block);
  return par;
}
