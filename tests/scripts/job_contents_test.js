// JScript has no by-reference arguments: of the methods with several results it gets the returned one.
var words = "A4,Hologram,Sparkle";

tests.MatchAttributes_gives_the_unmatched_words_alone = function () {
    var contents = new ActiveXObject("Corvane.JobContents");
    var paper = "before";
    checkEqual(contents.MatchAttributes(words, paper, "", "", "", "", false), "Hologram,Sparkle");
    checkEqual(paper, "before");
    checkEqual(contents.MatchAttributes("A4,Duplex", "", "", "", "", "", false), "");
};

tests.DoAttributesMatch_gives_its_answer_alone = function () {
    var contents = new ActiveXObject("Corvane.JobContents");
    checkEqual(contents.DoAttributesMatch(words, ""), false);
    checkEqual(contents.DoAttributesMatch("A4,Duplex", ""), true);
};
