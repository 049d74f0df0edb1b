/// Chains and field lists as short texts, so that a test reads as what it says.
///
/// A chain is written as its nodes with blanks between: ( ) .) for RTLB, RTLE and RTDOTE, "text", 5
/// (short), 5L (long), 1.5 (real), <1,2> and <1,2,3> (points), T, nil, ename:7, set:7, and any DXF
/// group as code:value, as 1000:NAME, 1010:1,2,3 or -3: .
/// A field list shows as NAME:letter=value with blanks between, as FLAG:I=2 ENDS:V[P=0,0,0
/// P=5,0,0].
#ifndef TESTS_CHAIN_TEXT_H
#define TESTS_CHAIN_TEXT_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/counters.h"
#include "kz/kz_zaglaid.h"

namespace test {

std::string narrow(const kz_Char* text);
std::u16string wide(const std::string& text);

/// The nodes of the text as a new chain; the caller releases it.
resbuf* chain(const std::string& text);
std::string show(const resbuf* chain);
std::string show(kz_FldList* list);
/// Shows a chain and releases it, a list and destroys it.
std::string take(resbuf* chain);
std::string take(kz_FldList* list);

/// A chain that is read through a cursor.
class Arguments {
  public:
    explicit Arguments(const std::string& text) : head_(chain(text)), at(head_) {}
    ~Arguments() { kz_ResBuf_release(head_); }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

  private:
    resbuf* head_;

  public:
    /// The cursor: pass its address to a reader.
    resbuf* at;
    /// What lies from the cursor on.
    std::string rest() const { return show(at); }
};

/// Collects what is traced at this level and below, under every bit, and fails a test that leaves
/// result-buffer nodes behind.
class ChainTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Lets statements up to this level speak.
    static void traceAt(int16_t level, int32_t mask = -1);
    /// What was traced since the last call, with line ends between.
    static std::string traced();

  private:
    int64_t nodes_ = 0;
};

}  // namespace test

#endif
