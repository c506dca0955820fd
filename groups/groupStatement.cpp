// The g and o statements. Covered by tests/groups/groupStatementTest.cpp.
#include "groups/groupStatement.h"

#include "groups/groupTable.h"
#include "model/objModel.h"
#include "obj/lineTokens.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter {

namespace {

// Tokens are cut at backslashes, so there is none to replace today. Deliberate:
// whatever becomes of the delimiters, no name will hold one.
std::string nameFromToken(const Token& token) {
    std::string name = token.text();
    std::replace(name.begin(), name.end(), '\\', '_');
    return name;
}

// Of the rest of a line: the token taken last, and those that follow it.
std::size_t countTokens(Token token, LineTokens following) noexcept {
    std::size_t count = 0;
    for (; !token.isMissing(); token = following.next())
        ++count;
    return count;
}

}  // namespace

void handleGroupStatement(ObjModel& model, LineTokens& tokens) {
    const Token first = tokens.next();
    if (first.isMissing()) {
        addDefaultGroup(model);
        return;
    }

    // Nearly every statement has one name and needs no list.
    Token token = tokens.next();
    if (token.isMissing()) {
        addGroup(model, nameFromToken(first));
        return;
    }

    std::vector<std::string> names;
    names.reserve(1 + countTokens(token, tokens));
    names.push_back(nameFromToken(first));
    for (; !token.isMissing(); token = tokens.next())
        names.push_back(nameFromToken(token));
    addGroupFromNames(model, std::move(names));
}

}  // namespace obj_adapter
