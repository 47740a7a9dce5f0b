// value_test: evaluators, evaluation, and copies with their values.
// SPDX-License-Identifier: MIT
#include "kit.h"

#include <climits>
#include <clocale>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using std::string;

/// What an evaluator makes of texts, asked in each of its ways; "-" where it refuses.
template <class Value> string reads(cfeval_t eval, const string &texts) {
  std::ostringstream all;
  std::istringstream rows(texts);
  for (string text; std::getline(rows, text, '|');) {
    Value value{77};
    const int size = eval(text.c_str(), nullptr);
    EXPECT_EQ(eval(nullptr, nullptr), int{sizeof value});
    EXPECT_EQ(eval(nullptr, &value), int{sizeof value});
    EXPECT_EQ(value, Value{77}) << "nothing is stored without a text";
    EXPECT_EQ(eval(text.c_str(), &value), size);
    EXPECT_EQ(size, value != Value{77} ? int{sizeof value} : -1) << text;
    size < 0 ? all << "- " : all << std::hexfloat << +value << ' ';
  }
  return all.str();
}

TEST(Evaluators, ReadWhatTheyTell) {
  EXPECT_EQ(reads<char>(cfevbool, "true|TRUE|False|yes|1|| true|true |tr"), "1 1 0 - - - - - - ");
  EXPECT_EQ(reads<long long>(cfevintx, "0x10|010|-5| 12|\t+0X1f|9223372036854775806|"
                                       "9223372036854775807|9223372036854775808|"
                                       "-9223372036854775808|-9223372036854775809|"
                                       "0xffffffffffffffff|-0777777777777777777777777|"
                                       "12 |12a|x|| |0x|08|1.5"),
            "16 8 -5 12 31 9223372036854775806 9223372036854775807 9223372036854775807 "
            "-9223372036854775808 -9223372036854775808 9223372036854775807 -9223372036854775808 "
            "- - - - - - - - ");
  const string low = std::to_string(LONG_MIN), high = std::to_string(LONG_MAX);
  EXPECT_EQ(reads<long>(cfevint, low + '|' + low + "0|" + high + '|' + high + "0|-0x1F|09|1 |"),
            low + ' ' + low + ' ' + high + ' ' + high + " -31 - - ");
  char storage = 's';
  EXPECT_EQ(cfevstr(nullptr, nullptr) + cfevstr("x", nullptr) + cfevstr("x", &storage), 0);
  EXPECT_EQ(storage, 's');
}

TEST(Evaluators, FollowTheLocalesDecimalPoint) {
  const string former = setlocale(LC_NUMERIC, nullptr);
  setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(reads<double>(cfevflt, "1.5|1e3| -.5|-0|0x1.8p1|-INFINITY|nan|1e999|1e-999|"
                                   "4.9406564584124654e-324|2.2250738585072009e-308|"
                                   "1.7976931348623157e308|1.5x||1 |e3|1,5"),
            "0x1.8p+0 0x1.f4p+9 -0x1p-1 -0x0p+0 0x1.8p+1 -inf nan inf 0x0p+0 "
            "0x0.0000000000001p-1022 0x0.fffffffffffffp-1022 0x1.fffffffffffffp+1023 - - - - - ");
  string dir = testing::TempDir() + "locale.XXXXXX";
  ASSERT_TRUE(mkdtemp(dir.data()));
  const string make = "localedef -i de_DE -f UTF-8 " + dir + "/de_DE.UTF-8 >/dev/null 2>&1";
  if (!setlocale(LC_NUMERIC, "de_DE.UTF-8") && std::system(make.c_str()) == 0)
    setenv("LOCPATH", dir.c_str(), 1);
  const bool comma = setlocale(LC_NUMERIC, "de_DE.UTF-8");
  const string read = reads<double>(cfevflt, "1,5|1.5|1");
  setlocale(LC_NUMERIC, former.c_str());
  EXPECT_EQ(std::system(("rm -r " + dir).c_str()), 0);
  if (!comma)
    GTEST_SKIP() << "no locale with a comma, and none can be made";
  EXPECT_EQ(read, "0x1.8p+0 - 0x1p+0 ");
}

/// An evaluator that answers as told, and tells what it was asked.
struct {
  int size, bytext, result;
  string asked, former; // former: the bytes of the value that is to be replaced
  const cfparam *par;
} script;

int scripted(const char *val, void *vval) {
  script.asked += !val ? 's' : !vval ? 't' : 'c';
  if (!val || !vval)
    return val ? script.bytext : script.size;
  EXPECT_EQ(reinterpret_cast<size_t>(vval) % alignof(std::max_align_t), 0U);
  EXPECT_FALSE(script.former.size() > 16 && string(cfvstr(script.par), 17) != script.former);
  std::memset(vval, 'n', static_cast<size_t>(script.size < 0 ? script.bytext : script.size));
  return script.result;
}

template <int Size> int sized(const char *val, void *vval) {
  return val && vval ? std::memset(vval, 'f', Size), 0 : Size;
}

TEST(Evaluation, AsksInOrderAndKeepsWhatItCannotReplace) {
  const kit::meter memory;
  for (const cfeval_t former : {cfeval_t{}, &cfevstr, &sized<8>, &sized<16>, &sized<17>})
    for (const auto &[size, bytext] : std::initializer_list<std::pair<int, int>>{
             {-1, -1}, {-7, 0}, {-1, 1}, {-1, 16}, {-1, 17}, {0, -1}, {1, 0}, {16, 0}, {17, 0}})
      for (const int result : {0, -1}) {
        cfparam *par = cfnewpar("key", "a text", 1);
        EXPECT_TRUE(!former || cfevalpar(par, former));
        const size_t held = former ? static_cast<size_t>(former(nullptr, nullptr)) : 0;
        const size_t live = memory.live();
        const void *vval = par->vval;
        script = {size, bytext, result, "", string(held, 'f'), par};
        const int n = size < 0 ? bytext : size;
        const bool good = n == 0 || (n > 0 && result >= 0);
        EXPECT_EQ(cfevalpar(par, scripted), good);
        EXPECT_TRUE(!good || cfevalpar(par, scripted)) << "it is there already: nothing is asked";
        EXPECT_EQ(script.asked, string("s") + (size < 0 ? "t" : "") + (n > 0 ? "c" : ""));
        EXPECT_EQ(memory.live(), good ? live - (held > 16) + (n > 16) : live);
        EXPECT_EQ(par->eval, good ? scripted : former);
        if (good) {
          EXPECT_EQ(par->vval == par + 1, n > 0 && n <= 16);
          EXPECT_TRUE(n ? *cfvstr(par) == 'n' : cfvstr(par) == cfstr(par));
        } else {
          EXPECT_EQ(par->vval, vval);
          EXPECT_EQ(string(held ? cfvstr(par) : "", held), script.former);
        }
        script = {size, bytext, -1, "", "", nullptr};
        cfparam *copy = cfduppar(par);
        EXPECT_EQ(copy->eval, good && n > 0 ? nullptr : par->eval);
        cfdelpar(copy);
        EXPECT_EQ(cfunevalpar(cfunevalpar(par)), par);
        EXPECT_TRUE(!par->eval && !par->vval);
        cfdelpar(par);
      }
}

TEST(Evaluation, GivesTypedValues) {
  cfparam *par = cfnewpar("key", "1", 1), *yes = cfnewpar("key", "true", 1);
  EXPECT_EQ(cfevalpar(par, cfevint) ? cfint(par) : 0, 1);
  EXPECT_EQ(cfevalpar(par, cfevintx) ? cfintx(par) : 0, 1);
  EXPECT_EQ(cfevalpar(par, cfevflt) ? cfflt(par) : 0, 1);
  EXPECT_EQ(cfevalpar(yes, cfevbool) ? cfbool(yes) : 0, 1);
  cfdelpar(par);
  cfdelpar(yes);
}

TEST(Evaluation, GoesThroughReferences) {
  const kit::meter memory;
  cfparam *par = cfnewpar("key", "0x10", 1), *ref = cfnewrefpar(par), *upper = cfnewrefpar(ref);
  EXPECT_EQ(cfvstr(upper), nullptr);
  EXPECT_EQ(cfevalpar(upper, cfevint), 1);
  EXPECT_EQ(cfint(upper) + cfint(ref) + cfint(par), 48);
  EXPECT_EQ(cfevalpar(upper, cfevbool), 0);
  EXPECT_EQ(cfevalpar(par, sized<17>), 1); // the references are not told, until they ask
  EXPECT_TRUE(upper->eval == cfevint && ref->eval == cfevint && upper->vval == ref->vval);
  EXPECT_EQ(cfevalpar(upper, sized<17>), 1);
  EXPECT_TRUE(upper->vval == par->vval && ref->vval == par->vval);
  EXPECT_EQ(cfunevalpar(upper), upper);
  for (const cfparam *it : {upper, ref, par})
    EXPECT_TRUE(!it->eval && !it->vval);
  EXPECT_EQ(cfevalpar(ref, sized<17>), 1);
  cfdelpar(upper);
  cfdelpar(ref);
  EXPECT_EQ(*cfvstr(par), 'f') << "a reference takes no value along";
  cfdelpar(par);
}

} // namespace
