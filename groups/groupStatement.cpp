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
void replaceBackslashes(std::string& name) {
    if (name.find('\\') != std::string::npos)
        std::replace(name.begin(), name.end(), '\\', '_');
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
        std::string name = first.text();
        replaceBackslashes(name);
        addGroup(model, std::move(name));
        return;
    }

    std::vector<std::string> names;
    names.reserve(1 + countTokens(token, tokens));
    names.emplace_back(first.view());
    for (; !token.isMissing(); token = tokens.next())
        names.emplace_back(token.view());
    for (std::string& name : names)
        replaceBackslashes(name);
    addGroupFromNames(model, std::move(names));
}

}  // namespace obj_adapter
