/// Input from the user. The platform forgets keywords and flags after one of its input calls, so
/// they are handed over again in each pass of a loop.
#include "guards.h"
#include "kz/kz_input.h"
#include "kz/kz_point_cnv.h"
#include "local_points.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/CAD";

/// Sizes of buffers [characters].
constexpr size_t kPromptSize = 256;
constexpr size_t kKeywordSize = 256;
constexpr size_t kAnswerSize = 133;
constexpr int kDefaultLength = 256;

/// Flag of acedInitGet that refuses Enter alone.
constexpr int kNoEnter = 1;

/// What a question for a value and one for a text give.
struct Outcomes {
    int value;
    int cancel;
};
constexpr Outcomes kValueOutcomes = {KZ_INPUT_VALUE, KZ_INPUT_CANCEL};
constexpr Outcomes kTextOutcomes = {1, 0};

/// A copy of the caller's prompt, since an action may overwrite that while the question is open.
class Prompt {
  public:
    explicit Prompt(const kz_Char* text) : fits_(kz_Str_len(text) < kPromptSize) {
        kz_Str_ncpy(text_, text, kPromptSize - 1);
    }
    bool fits() const { return fits_; }
    const kz_Char* text() const { return text_; }

  private:
    bool fits_;
    kz_Char text_[kPromptSize];
};

bool isCancel(int answer) {
    return answer == RTCAN || answer == RTERROR;
}

/// Keywords and flags of a question, and what becomes of the platform's answers.
class Question {
  public:
    Question(kz_KeyActionsList* list, int allow_none)
        : list_(list),
          keys_(kz_KeyActionsList_generateKeyString(list)),
          flags_(allow_none == 0 ? kNoEnter : 0) {}

    /// False when the keywords don't fit, or there is no memory for them.
    bool hasItsKeys() const { return list_ == nullptr || keys_ != nullptr; }
    bool hasKeywords() const { return keys_ != nullptr && *keys_ != 0; }
    kz_Char* keys() const { return keys_.get(); }

    /// Hands flags and keywords to the platform.
    int prepare() const { return acedInitGet(flags_, keys_ != nullptr ? keys_.get() : KZ_T("")); }

    /// Status of a pass that ended with Enter or with a keyword.
    int act(int answer, void* result) const {
        if (answer == RTNONE) return kz_KeyActionsList_executeDefaultAction(list_, result);
        kz_Char keyword[kKeywordSize] = KZ_T("");
        acedGetInput(keyword);
        return kz_KeyActionsList_executeAction(list_, keyword, result);
    }

    /// Puts the question until a pass ends it. `ask` gives the platform's answer, and for RTNORM
    /// has stored the value.
    template <class Ask>
    int put(const Outcomes& outcomes, void* result, Ask ask) const {
        int status = KZ_INPUT_AGAIN;
        while (status == KZ_INPUT_AGAIN) {
            const int answer = ask();
            if (answer == RTNORM) status = outcomes.value;
            if (answer == RTNONE || answer == RTKWORD) status = act(answer, result);
            if (isCancel(answer)) status = outcomes.cancel;
        }
        return status;
    }

  private:
    kz_KeyActionsList* list_;
    kz::OwnedText keys_;
    int flags_;
};

bool canAsk(const Question& question, const Prompt& prompt) {
    if (!prompt.fits()) {
        KZ_TRACE(kz::kTraceArgument, kz::kTraceCad, KZ_T("The prompt is too long."));
    }
    return prompt.fits() && question.hasItsKeys();
}

/// A point of the caller's in the UCS as the platform takes it.
class UcsPoint {
  public:
    /// NULL is no point.
    explicit UcsPoint(const kz_Point* local) : given_(local != nullptr) {
        if (given_) set(*local);
    }
    void set(const kz_Point& local) {
        const kz_Point ucs = kz::localToUcs(local);
        kz_Point_toADSPoint(coordinates_, &ucs);
    }
    const ads_real* orNull() const { return given_ ? coordinates_ : nullptr; }

  private:
    bool given_;
    ads_point coordinates_ = {};
};

void storeLocal(kz_Point* out, const ads_point ucs) {
    kz_Point point{};
    kz_Point_fromADSPoint(&point, ucs);
    if (out != nullptr) *out = kz::ucsToLocal(point);
}

void storeNumber(double* out, double value) {
    if (out != nullptr) *out = value;
}

/// The two corners of a window.
class WindowInput {
  public:
    WindowInput(const Question& question, kz_Point* first, kz_Point* second)
        : question_(question), first_(first), second_(second) {
        seeFromFirst();
    }

    int run(bool ask_first, const kz_Char* first_prompt, const kz_Char* second_prompt) {
        int cancels = 0;
        while (status_ == KZ_INPUT_AGAIN) {
            question_.prepare();
            if (ask_first && isCancel(askFirst(first_prompt))) return KZ_INPUT_CANCEL;
            const bool cancelled = isCancel(askSecond(second_prompt));
            cancels = cancelled ? cancels + 1 : 0;
            // Nobody could leave the question otherwise.
            if (!ask_first && status_ == KZ_INPUT_AGAIN && cancels > 1) return KZ_INPUT_CANCEL;
        }
        return status_;
    }

  private:
    void seeFromFirst() {
        if (first_ != nullptr) corner_.set(*first_);
    }

    int askFirst(const kz_Char* prompt) {
        ads_point picked = {};
        const int answer = acedGetPoint(nullptr, prompt, picked);
        if (answer == RTNORM) {
            kz_Point local{};
            storeLocal(&local, picked);
            corner_.set(local);
            if (first_ != nullptr) *first_ = local;
        } else if (first_ != nullptr && (answer == RTNONE || answer == RTKWORD)) {
            status_ = question_.act(answer, first_);
            seeFromFirst();
        }
        return answer;
    }

    int askSecond(const kz_Char* prompt) {
        ads_point picked = {};
        const int answer = acedGetCorner(corner_.orNull(), prompt, picked);
        if (second_ == nullptr || answer == RTNORM) {
            if (answer == RTNORM) storeLocal(second_, picked);
            status_ = KZ_INPUT_VALUE;
        } else if (answer == RTNONE || answer == RTKWORD) {
            status_ = question_.act(answer, second_);
        }
        return answer;
    }

    const Question& question_;
    kz_Point* first_;
    kz_Point* second_;
    UcsPoint corner_{&kOrigin};
    int status_ = KZ_INPUT_AGAIN;

    static constexpr kz_Point kOrigin = {0.0, 0.0, 0.0};
};

}  // namespace

int kz_CAD_getPoint(kz_Point* out, const kz_Char* prompt, kz_KeyActionsList* list,
                    const kz_Point* base, int allowNone) {
    const Prompt text(prompt);
    const Question question(list, allowNone);
    if (!canAsk(question, text)) return KZ_INPUT_CANCEL;
    if (question.keys() != nullptr) KZ_TRACE(kz::kTraceExit, kz::kTraceCad, question.keys());
    const UcsPoint from(base);
    return question.put(kValueOutcomes, out, [&] {
        ads_point picked = {};
        int answer = question.prepare();
        if (answer == RTNORM) answer = acedGetPoint(from.orNull(), text.text(), picked);
        if (answer == RTNORM) storeLocal(out, picked);
        return answer;
    });
}

int kz_CAD_getAngle(double* out, const kz_Char* prompt, kz_KeyActionsList* list,
                    const kz_Point* base, int allowNone) {
    const Prompt text(prompt);
    const Question question(list, allowNone);
    if (!canAsk(question, text)) return KZ_INPUT_CANCEL;
    const UcsPoint from(base);
    return question.put(kValueOutcomes, out, [&] {
        double radians = 0.0;
        question.prepare();
        const int answer = acedGetAngle(from.orNull(), text.text(), &radians);
        if (answer == RTNORM) storeNumber(out, kz_Cnv_rtod(radians));
        return answer;
    });
}

int kz_CAD_getDistance(double* out, const kz_Char* prompt, kz_KeyActionsList* list,
                       const kz_Point* base, int allowNone) {
    const Prompt text(prompt);
    const Question question(list, allowNone);
    if (!canAsk(question, text)) return KZ_INPUT_CANCEL;
    kz_Str_rtb(question.keys());
    const UcsPoint from(base);
    return question.put(kValueOutcomes, out, [&] {
        double distance = 0.0;
        question.prepare();
        const int answer = acedGetDist(from.orNull(), text.text(), &distance);
        if (answer == RTNORM) storeNumber(out, distance);
        return answer;
    });
}

int kz_CAD_getReal(double* out, const kz_Char* prompt, kz_KeyActionsList* list, int allowNone) {
    const Prompt text(prompt);
    const Question question(list, allowNone);
    if (!canAsk(question, text)) return KZ_INPUT_CANCEL;
    return question.put(kValueOutcomes, out, [&] {
        double number = 0.0;
        question.prepare();
        const int answer = acedGetReal(text.text(), &number);
        if (answer == RTNORM) storeNumber(out, number);
        return answer;
    });
}

int kz_CAD_getWindow(kz_Point* first, kz_Point* second, int askFirst, const kz_Char* firstPrompt,
                     const kz_Char* secondPrompt, kz_KeyActionsList* list, int allowNone) {
    const Prompt first_text(firstPrompt);
    const Prompt second_text(secondPrompt);
    const Question question(list, allowNone);
    if (!canAsk(question, first_text) || !canAsk(question, second_text)) return KZ_INPUT_CANCEL;
    WindowInput window(question, first, second);
    return window.run(askFirst != 0, first_text.text(), second_text.text());
}

int kz_CAD_getString(kz_Char* out, const kz_Char* prompt, kz_KeyActionsList* list, int allowNone) {
    return kz_CAD_getStringWithLength(out, kDefaultLength, prompt, list, allowNone);
}

int kz_CAD_getStringWithLength(kz_Char* out, int length, const kz_Char* prompt,
                               kz_KeyActionsList* list, int allowNone) {
    const Prompt text(prompt);
    const Question question(list, allowNone);
    if (!canAsk(question, text)) return kTextOutcomes.cancel;
    return question.put(kTextOutcomes, out, [&] {
        kz_Char typed[kAnswerSize] = KZ_T("");
        if (question.hasKeywords()) {
            question.prepare();
            const int answer = acedGetKword(text.text(), typed);
            return answer == RTNORM ? static_cast<int>(RTKWORD) : answer;
        }
        const int answer = acedGetString(1, text.text(), typed);
        if (answer == RTNORM && out != nullptr && length > 0) {
            kz_Str_ncpy(out, typed, static_cast<size_t>(length) - 1);
        }
        return answer;
    });
}

int kz_CAD_getVector(kz_Vector* out, const kz_Point* base, const kz_Char* prompt) {
    if (base == nullptr) return 0;
    kz_Point picked{};
    if (kz_CAD_getPoint(&picked, prompt, nullptr, base, 0) != KZ_INPUT_VALUE) return 0;
    return kz_Vector_computeVector(out, base, &picked);
}

int kz_CAD_getOrthoVector(kz_Vector* out, const kz_Point* base, const kz_Vector* reference,
                          const kz_Char* prompt) {
    if (base == nullptr || reference == nullptr) return 0;
    kz_Point picked{};
    if (kz_CAD_getPoint(&picked, prompt, nullptr, base, 0) != KZ_INPUT_VALUE) return 0;
    kz_Point second{};
    if (kz_Point_translateByVector(&second, base, reference, 1.0) != 1) return 0;
    return kz_Point_getOrthoVector(out, base, &second, &picked);
}

int kz_CAD_snapPoint(kz_Point* out, const kz_Point* point, const kz_Char* modes) {
    if (out == nullptr || point == nullptr || modes == nullptr) return 0;
    const UcsPoint ucs(point);
    kz_Point_copy(out, point);
    const kz::OwnedStrList list(kz_StrList_fromDelimitedString(modes, KZ_T(",; ")));
    for (kz_StrList_start(list.get()); kz_StrList_eol(list.get()) == 0;
         kz_StrList_next(list.get())) {
        ads_point found = {};
        if (acedOsnap(ucs.orNull(), kz_StrList_getCurr(list.get()), found) != RTNORM) continue;
        storeLocal(out, found);
        return 1;
    }
    return 0;
}

int kz_CAD_print(const kz_Char* text) {
    return acutPrintf(text != nullptr ? text : KZ_T(""));
}

int kz_CAD_prompt(const kz_Char* text) {
    return acedPrompt(text != nullptr ? text : KZ_T(""));
}

int kz_CAD_displayGraphicsScreen(void) {
    return acedGraphScr() == RTNORM ? 1 : 0;
}

int kz_CAD_displayTextScreen(void) {
    return acedTextScr() == RTNORM ? 1 : 0;
}
