// Holds GLB files against the format. Prints errors and warnings; the exit code is
// 0 if there are no errors.
const fs = require('fs');
const path = require('path');
const validator = require('gltf-validator');

const SEVERITIES = ['error', 'warning'];

async function validate(fileName) {
    const folder = path.dirname(fileName);
    const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(fileName)), {
        uri: path.basename(fileName),
        externalResourceFunction: async (uri) =>
            new Uint8Array(fs.readFileSync(path.resolve(folder, decodeURIComponent(uri)))),
    });
    for (const message of report.issues.messages) {
        if (message.severity < SEVERITIES.length) {
            console.log(`${path.basename(fileName)}: ${SEVERITIES[message.severity]}: ` +
                        `${message.code} ${message.pointer || ''} ${message.message}`);
        }
    }
    return report.issues.numErrors;
}

async function main(fileNames) {
    let errors = 0;
    for (const fileName of fileNames) {
        errors += await validate(fileName);
    }
    console.log(`${fileNames.length} files, ${errors} errors`);
    process.exitCode = errors === 0 ? 0 : 1;
}

main(process.argv.slice(2));
