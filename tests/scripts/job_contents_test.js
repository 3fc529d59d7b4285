// JScript has no by-reference arguments, so of several results it gets only the return value.
var words = "A4,Hologram,Sparkle";

tests.MatchAttributes_returns_only_the_unmatched_words = function () {
    var contents = new ActiveXObject("Corvane.JobContents");
    var paper = "before";
    checkEqual(contents.MatchAttributes(words, paper, "", "", "", "", false), "Hologram,Sparkle");
    checkEqual(paper, "before");
    checkEqual(contents.MatchAttributes("A4,Duplex", "", "", "", "", "", false), "");
};

tests.DoAttributesMatch_returns_only_its_result = function () {
    var contents = new ActiveXObject("Corvane.JobContents");
    checkEqual(contents.DoAttributesMatch(words, ""), false);
    checkEqual(contents.DoAttributesMatch("A4,Duplex", ""), true);
};
