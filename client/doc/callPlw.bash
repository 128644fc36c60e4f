# bash completion for callPlw: -x and the options of the command before it, names of commands behind
# -x, files behind -f.
_callPlw() {
    local commands='
        parentPID sync activeDoc
        selectCurve:stca selectCurveByPosition:setucfa selectCurveByIndex:ija
        indexOfCurveName:stc nextMarkedCurve markSelectedCurves markSelectionAsFitData
        YatX:as Yi:is iAtX:as iAtXY:ab setYi:ias selectedIndex fitCurveIndex mouseClick
        setAttributes:lsyeaftrmS setAttributes2:sptycmnwhijkrgboRGB setDocAttributes:whtaeymr
        setAxis:aitluwmnerokbcsg placeText:truafg
        getXRange getYRange getFitRange setXRange:se setYRange:se setFitRange:se
        getVar:s getFormula setFormula:f getFormulaParameters setFormulaParameters:p fit
        newDocument open:fr display:r activate print saveDocument:fkb close:a
        savePDF:f saveEPS:f saveTIFF:f copyPDF copyTIFF
        newComposition:XYwh addPDFtoComposition:XYwhas savePDFofComposition:fa
        readData:psra replaceData:psr copy:i pasteData duplicateAsPlotted setDecimalSeparator:s
        inventory:ts
        statistic searchMaxima:gswh createCurveAtSelection:seiyj changeNameOfSelection:t
        modifyX modifyY show diff delete sortByX sortBySelection:r swapWithX'
    local word=${COMP_WORDS[COMP_CWORD]} names='' options='-x' command='' entry before i
    for entry in $commands; do names+=" ${entry%:*}"; done

    # Options and their values up to the word; a stray word ends them.
    for ((i = 1; i < COMP_CWORD; ++i)); do
        before=${COMP_WORDS[i]}
        case $before in
            -x) command=${COMP_WORDS[++i]} ;;
            -x*) command=${before#-x} ;;
            -?) ((++i)) ;;
            -?*) ;;
            *) return ;;
        esac
    done

    if ((i > COMP_CWORD)); then # the value of the option before
        case $before in
            -x) mapfile -t COMPREPLY < <(compgen -W "$names" -- "$word") ;;
            -f) compopt -o default ;; # readline's own completion of files
        esac
        return
    fi
    case $word in
        -x?*) mapfile -t COMPREPLY < <(compgen -P -x -W "$names" -- "${word#-x}") ;;
        '' | -*)
            for entry in $commands; do
                [[ $entry == "$command":* ]] || continue
                for ((i = ${#command} + 1; i < ${#entry}; ++i)); do
                    options+=" -${entry:i:1}"
                done
            done
            mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
            ;;
    esac
}
complete -F _callPlw callPlw
