// Writes a bill of materials of the components listed in a file. Fields of a line, between tabs: kind
// (file, library or tool), name, version, SPDX license, SHA-256, description; "-" is none. A tool made the
// release and is not in it.
import { readFileSync } from "node:fs";
import { Enums, Models, Serialize, Spec, Validation } from "@cyclonedx/cyclonedx-library";

const kinds = {
    file: Enums.ComponentType.File,
    library: Enums.ComponentType.Library,
    tool: Enums.ComponentType.Application,
};

function component(line) {
    const [kind, name, version, license, sha256, description] =
        line.split("\t").map((field) => (field === "-" ? undefined : field));
    const made = new Models.Component(kinds[kind], name, { version, description, bomRef: `${kind}:${name}` });
    if (license !== undefined) {
        made.licenses.add(license.includes(" ") ? new Models.LicenseExpression(license) : new Models.SpdxLicense(license));
    }
    if (sha256 !== undefined) {
        made.hashes.set(Enums.HashAlgorithm["SHA-256"], sha256);
    }
    return made;
}

const [version, epoch, list] = process.argv.slice(2);
const lines = readFileSync(list, "utf8").split("\n").filter((line) => line !== "");
const isTool = (line) => line.startsWith("tool\t");

const bom = new Models.Bom();
bom.metadata.timestamp = new Date(Number(epoch) * 1000);
bom.metadata.component = new Models.Component(Enums.ComponentType.Application, "cli", { version, bomRef: "cli" });
bom.metadata.tools.components = new Models.ComponentRepository(lines.filter(isTool).map(component));
for (const line of lines.filter((each) => !isTool(each))) {
    bom.components.add(component(line));
}
for (const each of bom.components) {
    bom.metadata.component.dependencies.add(each.bomRef);
}

const format = Spec.Spec1dot6;
const text = new Serialize.JsonSerializer(new Serialize.JSON.Normalize.Factory(format)).serialize(bom, {
    sortLists: true,
    space: 2,
});
const errors = await new Validation.JsonStrictValidator(format.version).validate(text);
if (errors !== null) {
    console.error(errors);
    process.exit(1);
}
console.log(text);
