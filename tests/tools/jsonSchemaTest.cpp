// Holds the JSON of every verb against the schema that documents it.
#include "checkReport.h"
#include "checkText.h"
#include "groupTree.h"
#include "jsonOutput.h"
#include "summaryJson.h"
#include "treeText.h"

#include "support/modelFiles.h"
#include "tools/importedText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include <sstream>
#include <string>

namespace obj_adapter::test {

namespace {

using PlainJson = nlohmann::json;
using Adapter = valijson::adapters::NlohmannJsonAdapter;

class Schema {
public:
    Schema() : document(PlainJson::parse(readFileBytes(OBJ_ADAPTER_TOOL_SCHEMA))) {
        valijson::SchemaParser().populateSchema(Adapter(document), schema);
    }

    // Empty if the text is valid.
    std::string findFaults(const std::string& text) const {
        const PlainJson json = PlainJson::parse(text);
        valijson::Validator validator;
        valijson::ValidationResults results;
        if (validator.validate(schema, Adapter(json), &results))
            return {};
        std::string faults;
        valijson::ValidationResults::Error error;
        while (results.popError(error)) {
            for (const std::string& part : error.context)
                faults += part;
            faults += ": " + error.description + "\n";
        }
        return faults.empty() ? "invalid" : faults;
    }

private:
    PlainJson document;
    valijson::Schema schema;
};

std::string textOf(const tool::Json& json) {
    std::ostringstream out;
    tool::printJson(out, json);
    return out.str();
}

// What info, check and tree print for a file.
std::vector<std::string> outputsFor(const std::string& fileName) {
    std::vector<std::string> outputs;
    tool::ImportSettings settings;
    settings.fileName = fileName;
    const tool::ImportRun run = importQuietly(settings);
    const tool::ModelAccess model(*ObjConverter::getInstance());
    outputs.push_back(textOf(tool::summaryToJson(model, run, fileName)));
    outputs.push_back(
        textOf(tool::treeToJson(tool::listGroupTree(model.getConverter()), run, fileName)));
    ObjConverter::clearInstance();
    outputs.push_back(textOf(tool::reportsToJson({tool::checkFile(settings)})));
    return outputs;
}

void expectValid(const Schema& schema, const std::string& fileName) {
    for (const std::string& output : outputsFor(fileName))
        EXPECT_EQ(schema.findFaults(output), "") << fileName << "\n" << output.substr(0, 2000);
}

TEST(JsonSchemaTest, SamplesAndModels) {
    const Schema schema;
    for (const std::string& fileName : findObjFiles(OBJ_ADAPTER_SAMPLES))
        expectValid(schema, fileName);
    expectValid(schema, OBJ_ADAPTER_SCENE);
    if (getModelFolder().empty())
        return;
    for (const std::string& fileName : findObjFiles(getModelFolder()))
        expectValid(schema, fileName);
}

TEST(JsonSchemaTest, OddFiles) {
    const Schema schema;
    const TemporaryDirectory directory;
    expectValid(schema, "no/such/file.obj");
    expectValid(schema, directory.write("empty.obj", ""));
    directory.write(
        "odd.mtl",
        "newmtl \xff\x01\"\nKd nan inf 1\nKa xyz nan\nKs spectral \xfe.rfl inf\nNs nan\n"
        "d inf\nNi -inf\nmap_Kd -s nan inf 1 -o 1e999 0 0 \xff.png\n");
    expectValid(schema, directory.write("odd\xc3\xa4.obj",
                                        "mtllib odd.mtl\nv nan inf -inf\nv 1 2 3\nv 0 0 1e308\n"
                                        "g \xff\xfe \"quoted\" \x02\nusemtl \xff\x01\"\n"
                                        "\xff\xff 1 2\nf 1 2 3\n"));
}

// A schema that lets everything pass would not be noticed otherwise.
TEST(JsonSchemaTest, TheSchemaRefusesWhatIsWrong) {
    const Schema schema;
    const std::string good = outputsFor(OBJ_ADAPTER_SCENE)[0];
    for (const char* key : {"format", "verb", "counts", "groups", "materials", "boundingBox"}) {
        PlainJson without = PlainJson::parse(good);
        without.erase(key);
        EXPECT_NE(schema.findFaults(without.dump()), "") << key;
        PlainJson wrong = PlainJson::parse(good);
        wrong[key] = "wrong";
        EXPECT_NE(schema.findFaults(wrong.dump()), "") << key;
    }
    PlainJson more = PlainJson::parse(good);
    more["counts"]["edges"] = 5;
    EXPECT_NE(schema.findFaults(more.dump()), "");
}

}  // namespace

}  // namespace obj_adapter::test
