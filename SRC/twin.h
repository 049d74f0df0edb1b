/// The frame of a Lisp twin. It takes the call's arguments and reads them in order through the
/// exported readers; after the first refusal further reads read nothing and give empty values. It
/// owns what the readers make, and its end does what every twin of the family does at its end.
#ifndef SRC_TWIN_H
#define SRC_TWIN_H

#include "guards.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_rb.h"

/// Opens the definition of a twin: a function without arguments that the host finds by its name and
/// that returns 1 in any case.
#define KZ_TWIN extern "C" KZ_EXPORT int

namespace kz {

/// A value of any type, as the field functions take it.
struct LispValue {
    int16_t type = 0;            ///< type letter
    const void* data = nullptr;  ///< the text for C and H, else the address of the value
};

/// What a family of twins has in common.
struct TwinFamily {
    const char* source;  ///< module path of its trace statements
    int32_t mask;        ///< bit of its trace statements; 0: neither entry nor exit is traced
};

class TwinCall {
  public:
    /// `name` is the twin's own name, `usage` the line that a wrong argument prints (NULL: none).
    /// The result is nil until an answer is given.
    TwinCall(const TwinFamily& family, const kz_Char* name, const char* usage);
    /// Prints the usage line when an argument was refused, and traces the exit.
    ~TwinCall();
    TwinCall(const TwinCall&) = delete;
    TwinCall& operator=(const TwinCall&) = delete;

    // --- readers, one for each argument; what they give lasts until the end of the call ----------

    /// An entity by name or handle. A handle that nobody has gives the null name.
    const int64_t* entity();
    /// A field list.
    kz_FldList* fields() { return readFields(0); }
    /// A field list; NULL for nil.
    kz_FldList* fieldsOrNil() { return readFields(1); }
    /// A text of up to 255 characters.
    const kz_Char* text() { return readText(0); }
    /// The same; empty for nil.
    const kz_Char* textOrEmpty() { return readText(1); }
    /// A text of any length.
    const kz_Char* longText();
    /// A flag; 0 for nil.
    int flag();
    /// A number, text or point.
    LispValue value();
    /// The arguments that were not read.
    resbuf* rest() const { return cursor_; }

    // --- going on --------------------------------------------------------------------------------

    /// True when all was read.
    bool readAll() const { return read_all_; }
    /// True when all was read and the entity exists.
    bool ready() const;
    /// Prints a message on the command line, in a line of its own.
    static void message(const char* text);

    // --- answers ---------------------------------------------------------------------------------

    /// T for the status 1; the result stays nil otherwise.
    void answerStatus(int status);
    /// The status that the exit is traced with.
    void setStatus(int status) { status_ = status; }
    int status() const { return status_; }

  protected:
    const kz_Char* name() const { return name_; }
    /// Reads by a family's own reader, which takes the cursor and gives 1 or 0; nothing is read
    /// once an argument was refused.
    template <class Reader>
    void read(Reader reader) {
        note(read_all_ && reader(&cursor_) == 1);
    }

  private:
    static constexpr int kMaxTexts = 2;
    static constexpr int kTextSize = 256;

    void note(bool good);
    kz_FldList* readFields(int nil_allowed);
    const kz_Char* readText(int nil_allowed);

    const TwinFamily& family_;
    const kz_Char* name_;
    const char* usage_;
    resbuf* cursor_ = nullptr;
    bool read_all_ = true;
    int status_ = 1;
    int text_count_ = 0;
    ads_name entity_ = {};
    OwnedFldList fields_;  ///< the list or the wrapped value that was read
    OwnedText long_text_;
    kz_Char texts_[kMaxTexts][kTextSize];
};

}  // namespace kz

#endif
