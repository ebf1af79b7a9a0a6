// validate.js SCHEMA MACHINE: prints what is wrong; ends with 1 when something is.
// Each device is validated by itself: one schema of a thousand takes twice as long to compile, and ten thousand overflow
// a stack.
const fs = require("fs");
const Ajv = require("ajv");

const read = (path) => JSON.parse(fs.readFileSync(path, "utf8"));
const [schema, machine] = process.argv.slice(2).map(read);
const ajv = new Ajv({allErrors: true});
for (const locator of schema.required) {
    const properties = {[locator]: schema.properties[locator]};
    const validate = ajv.compile({type: "object", required: [locator], properties});
    if (!validate(machine)) {
        validate.errors.forEach((fault) => console.log(fault.instancePath, fault.message));
        process.exitCode = 1;
    }
}
