/// Chains of forms, cut in the middle.
#include "lisp/backtrace.h"

#include "kz_tls21an/text.h"
#include "lisp/printer.h"
#include "lisp/source_map.h"

namespace host::lisp {

namespace {

constexpr size_t kFormLength = 70;

std::u16string shortened(const Value& form) {
    std::u16string text;
    print(text, form, PrintForm::Readable, kFormLength);
    if (text.size() > kFormLength) {
        text.resize(kFormLength - 3);
        text.append(3, u'.');
    }
    return text;
}

/// True when a list is one of the forms that another one is made of, itself included.
bool contains(const Value& whole, const Object* form) {
    std::vector<const Value*> waiting = {&whole};
    while (!waiting.empty()) {
        const Value* rest = waiting.back();
        waiting.pop_back();
        for (; rest->isCons(); rest = &rest->cons()->cdr) {
            if (rest->object() == form) return true;
            if (rest->cons()->car.isCons()) waiting.push_back(&rest->cons()->car);
        }
    }
    return false;
}

/// The user function that a form calls by name; NULL for none.
const UserFunction* called(const Value& form) {
    const Value& head = form.cons()->car;
    const bool user = head.isSymbol() && head.symbol()->value.is(Kind::UserFunction);
    return user ? head.symbol()->value.as<UserFunction>() : nullptr;
}

/// The user function whose body the form with this number stands in; NULL for none.
const UserFunction* surrounding(const std::vector<Value>& forms, size_t number) {
    for (size_t outer = number + 1; outer < forms.size(); ++outer) {
        const UserFunction* const function = called(forms[outer]);
        if (function && contains(function->body, forms[number].object())) return function;
    }
    return nullptr;
}

/// A number with commas between its thousands.
std::u16string grouped(size_t number) {
    std::string digits = std::to_string(number);
    for (size_t at = digits.size(); at > 3;)
        digits.insert(at -= 3, 1, ',');
    return kz::toUtf16(digits);
}

}  // namespace

void Backtrace::add(const Cons* form) {
    Value shared = Value::share(const_cast<Cons*>(form));
    if (count_ < kInner) {
        inner_.push_back(std::move(shared));
    } else if (outer_.size() < kOuter) {
        outer_.push_back(std::move(shared));
    } else {
        outer_[(count_ - kInner) % kOuter] = std::move(shared);
    }
    ++count_;
}

std::u16string Backtrace::text(const SourceMap& sources) const {
    std::vector<Value> forms = inner_;
    for (size_t i = 0; i < outer_.size(); ++i)
        forms.push_back(outer_[(count_ - kInner + i) % outer_.size()]);
    const size_t left_out = count_ - forms.size();
    std::u16string text;
    for (size_t i = 0; i < forms.size(); ++i) {
        if (i == kInner && left_out > 0) {
            text.append(u"; ... ").append(grouped(left_out)).append(u" more ...\n");
        }
        text.append(u"; ").append(grouped(i < kInner ? i : i + left_out)).append(u": ");
        text.append(shortened(forms[i]));
        if (const UserFunction* function = surrounding(forms, i); function && function->name)
            text.append(u" in ").append(function->name->name);
        const auto place = sources.find(forms[i].object()->place);
        if (!place.file.empty()) {
            text.append(u", ").append(place.file).append(u", line ");
            text.append(kz::toUtf16(std::to_string(place.line)));
        }
        text.push_back(u'\n');
    }
    return text;
}

}  // namespace host::lisp
