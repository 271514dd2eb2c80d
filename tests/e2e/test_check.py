"""packager check on real files: what it prints, in all three formats, and its exit codes."""

import json

from harness import EndToEndTest, main

MISTAKES = ('<TandrelGroupInstallation>\n  <ProductDesc><Fullname>Gr\u00fc\u00dfe</Fullname></ProductDesc>\n'
            '  <DefValues>\n    <Value Name="UNUSED" DataType="value">1</Value>\n  </DefValues>\n'
            '  <Dialog/>\n  <FileSet Name="\u00e4\u4e2d" Sort="1"/>\n</TandrelGroupInstallation>\n')


class Check(EndToEndTest):
    def check(self, text, *options):
        self.write("check.xml", text)
        return self.packager("check", self.native("check.xml"), *options)

    def test_mistakes_fail_with_their_places(self):
        result = self.check(MISTAKES)
        self.assertEqual(result.code, 1, result)
        self.assertIn("check.xml:6:3: error: there is no element Dialog", result.out)
        self.assertIn("check.xml:7:22: error: FileSet has no attribute Sort [attribute-unknown]", result.out)

    def test_json_is_json(self):
        result = self.check(MISTAKES, "--format", "json")
        self.assertEqual(result.code, 1, result)
        findings = json.loads(result.out)
        self.assertGreaterEqual(len(findings), 3)
        for finding in findings:
            self.assertEqual(list(finding), ["file", "line", "column", "code", "severity", "message", "hint"])
            self.assertEqual(finding["file"], self.native("check.xml"))
            self.assertIn(finding["severity"], ("error", "warning"))
        places = [(f["line"], f["column"]) for f in findings]
        self.assertEqual(places, sorted(places))

    def test_sarif_has_what_the_standard_requires(self):
        report = json.loads(self.check(MISTAKES, "--format", "sarif").out)
        self.assertEqual(report["version"], "2.1.0")
        (run,) = report["runs"]
        rules = {rule["id"] for rule in run["tool"]["driver"]["rules"]}
        self.assertEqual(run["tool"]["driver"]["name"], "packager")
        self.assertGreaterEqual(len(run["results"]), 3)
        for result in run["results"]:
            self.assertIn(result["ruleId"], rules)
            self.assertIn(result["level"], ("error", "warning"))
            self.assertTrue(result["message"]["text"])
            place = result["locations"][0]["physicalLocation"]
            self.assertTrue(place["artifactLocation"]["uri"].endswith("/check.xml"))
            self.assertTrue(place["artifactLocation"]["uri"].startswith("file:///"))
            self.assertGreaterEqual(place["region"]["startColumn"], 1)

    def test_what_cannot_be_read_is_an_error_on_standard_error(self):
        result = self.packager("check", self.native("missing.xml"))
        self.assertEqual((result.code, result.out), (1, ""), result)
        self.assertIn("the description can't be read", result.err)
        result = self.packager("check")
        self.assertEqual((result.code, result.out), (2, ""), result)


if __name__ == "__main__":
    main()
